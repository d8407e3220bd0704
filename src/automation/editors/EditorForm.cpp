#include "automation/editors/EditorForm.h"

#include <QComboBox>
#include <QDialog>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListView>
#include <QPalette>
#include <QPlainTextEdit>
#include <QPushButton>
#include <initializer_list>
#include <limits>

#include "automation/core/LineBreaks.h"
#include "automation/editors/EditorTexts.h"

namespace kelmora::automation {

namespace {

constexpr QSize smallestSize(420, 360);
constexpr QSize firstSize(520, 440);

QFont fixedPitchFont(const QFont& like) {
  if (QFontInfo(like).fixedPitch())
    return like;
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (like.pointSizeF() > 0)
    font.setPointSizeF(like.pointSizeF());
  return font;
}

/// A disabled field shows commands that the player wants to read, but in many
/// styles disabled text is hardly darker than the background. So it gets a colour
/// of its own, two thirds of the way from the background to that of usual text.
void keepLegible(QWidget& field, const QPalette& surroundings) {
  const QColor text = surroundings.color(QPalette::Active, QPalette::Text);
  const QColor background = surroundings.color(QPalette::Disabled, QPalette::Base);
  const auto mixed = [](float a, float b) { return 0.65F * a + 0.35F * b; };
  QPalette palette;
  palette.setColor(QPalette::Disabled, QPalette::Text,
                   QColor::fromRgbF(mixed(text.redF(), background.redF()),
                                    mixed(text.greenF(), background.greenF()),
                                    mixed(text.blueF(), background.blueF())));
  field.setPalette(palette);
}

/// A line edit keeps pasted line breaks as characters of its text. No line from the
/// server and nothing that the player types holds one, so they would make a label
/// that never matches.
void dropLineBreaks(QLineEdit& field) {
  const QString text = field.text();
  const QString kept = withoutLineBreaks(text);
  if (kept == text)
    return;
  const qsizetype place = withoutLineBreaks(text.first(field.cursorPosition())).size();
  field.setText(kept);
  field.setCursorPosition(static_cast<int>(place));
}

QHBoxLayout* rowOf(std::initializer_list<QWidget*> widgets) {
  auto* row = new QHBoxLayout;
  for (QWidget* widget : widgets)
    row->addWidget(widget);
  return row;
}

}  // namespace

EditorForm::EditorForm(QDialog& dialog, const EditorTexts& texts) : dialog_(dialog) {
  create(texts);
  layOut();
  name(texts);
  setFieldColours();
}

// The Tab key follows the order in which the controls are made, so they are made
// in the order in which they are read.
void EditorForm::create(const EditorTexts& texts) {
  const auto makeButton = [this](const QString& text) {
    auto* button = new QPushButton(text, &dialog_);
    // Otherwise Enter in a field would press one of the buttons.
    button->setAutoDefault(false);
    return button;
  };

  commands = new QPlainTextEdit(&dialog_);
  commands->setLineWrapMode(QPlainTextEdit::NoWrap);
  commands->setFont(fixedPitchFont(dialog_.font()));
  commands->setTabChangesFocus(true);
  if (texts.labelField) {
    label = new QLineEdit(&dialog_);
    // Line edits cut longer text at 32767 characters. A label from the file may be
    // longer, and saving must not change it.
    label->setMaxLength(std::numeric_limits<int>::max());
    QObject::connect(label, &QLineEdit::textEdited, label, [this] { dropLineBreaks(*label); });
  }
  editButton = makeButton(texts.editButton);
  saveButton = makeButton(texts.saveButton);
  cancelButton = makeButton(texts.cancelButton);
  list = new QComboBox(&dialog_);
  // The list does not measure its labels: with thousands of entries that would
  // take long, and one long pattern would make the whole dialog as wide.
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setMinimumContentsLength(12);
  if (auto* view = qobject_cast<QListView*>(list->view()))
    view->setUniformItemSizes(true);
  addButton = makeButton(texts.addButton);
  deleteButton = makeButton(texts.deleteButton);
  closeButton = makeButton(texts.closeButton);
}

void EditorForm::layOut() {
  auto* column = new QGridLayout(&dialog_);
  int row = 0;
  column->addWidget(commands, row++, 0);
  if (label)
    column->addWidget(label, row++, 0);
  column->addLayout(rowOf({editButton, saveButton, cancelButton}), row++, 0);
  QHBoxLayout* choice = rowOf({list, addButton, deleteButton});
  choice->setStretch(0, 2);
  choice->setStretch(1, 1);
  choice->setStretch(2, 1);
  column->addLayout(choice, row++, 0);
  column->addWidget(closeButton, row, 0);
  dialog_.setMinimumSize(smallestSize);
  dialog_.resize(firstSize);
}

// With a large font of the desktop the first size would cut the buttons' texts.
void EditorForm::makeRoom() {
  dialog_.layout()->invalidate();  // the font may have changed since they were last measured
  dialog_.layout()->activate();
  const QSize needed = dialog_.layout()->minimumSize();
  const bool fits = needed.boundedTo(firstSize) == needed;
  dialog_.setMinimumSize(fits ? smallestSize : smallestSize.expandedTo(needed));
}

void EditorForm::name(const EditorTexts& texts) {
  commands->setAccessibleName(texts.commandsName);
  commands->setToolTip(texts.commandsUsage);
  list->setAccessibleName(texts.title);
  if (label) {
    label->setAccessibleName(texts.labelField->name);
    label->setToolTip(texts.labelField->usage);
  }
}

void EditorForm::setFieldColours() {
  keepLegible(*commands, dialog_.palette());
  if (label)
    keepLegible(*label, dialog_.palette());
}

void EditorForm::setEditing(bool editing) {
  const auto setEditable = [&] {
    commands->setEnabled(editing);
    if (label)
      label->setEnabled(editing);
    saveButton->setEnabled(editing);
    cancelButton->setEnabled(editing);
  };
  const auto setBrowsable = [&] {
    list->setEnabled(!editing);
    addButton->setEnabled(!editing);
    deleteButton->setEnabled(!editing);
    editButton->setEnabled(!editing && list->currentIndex() >= 0);
  };
  // The focus is moved first, before its control is disabled: the toolkit would
  // move it to the next control on its own.
  if (editing) {
    setEditable();
    commands->setFocus();
    setBrowsable();
  } else {
    setBrowsable();
    list->setFocus();
    setEditable();
  }
}

}  // namespace kelmora::automation

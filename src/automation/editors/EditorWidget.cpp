#include "automation/editors/EditorWidget.h"

#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPalette>
#include <QPlainTextEdit>
#include <initializer_list>
#include <limits>
#include <utility>

#include "automation/core/LineBreaks.h"

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

EditorWidget::EditorWidget(EditorTexts texts, QWidget* parent)
    : QDialog(parent), texts_(std::move(texts)) {
  setWindowTitle(texts_.title);
  setWindowIcon(QIcon(texts_.iconPath));
  setModal(true);
  createControls();
  layOutControls();
  nameControls();
  setFieldColours();
  setState(State::Browsing);
}

void EditorWidget::showEditor() {
  // Without entries the list would not say that another one is selected.
  if (isDraft_)
    showEntry(-1);
  listEntries();
  setState(State::Browsing);
  makeRoom();
  show();
}

// The Tab key follows the order in which the controls are made, so they are made
// in the order in which they are read.
void EditorWidget::createControls() {
  const auto makeButton = [this](const QString& text) {
    auto* button = new QPushButton(text, this);
    // Otherwise Enter in a field would press one of the buttons.
    button->setAutoDefault(false);
    return button;
  };

  commands_ = new QPlainTextEdit(this);
  commands_->setLineWrapMode(QPlainTextEdit::NoWrap);
  commands_->setFont(fixedPitchFont(font()));
  commands_->setTabChangesFocus(true);
  if (texts_.labelField) {
    label_ = new QLineEdit(this);
    // Line edits cut longer text at 32767 characters. A label from the file may be
    // longer, and saving must not change it.
    label_->setMaxLength(std::numeric_limits<int>::max());
    connect(label_, &QLineEdit::textEdited, this, [this] { dropLineBreaks(*label_); });
  }
  editButton_ = makeButton(texts_.editButton);
  saveButton_ = makeButton(texts_.saveButton);
  cancelButton_ = makeButton(texts_.cancelButton);
  list_ = new QComboBox(this);
  // The list does not measure its labels: with thousands of entries that would
  // take long, and one long pattern would make the whole dialog as wide.
  list_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list_->setMinimumContentsLength(12);
  if (auto* view = qobject_cast<QListView*>(list_->view()))
    view->setUniformItemSizes(true);
  addButton_ = makeButton(texts_.addButton);
  deleteButton_ = makeButton(texts_.deleteButton);
  closeButton_ = makeButton(texts_.closeButton);
}

void EditorWidget::layOutControls() {
  auto* column = new QGridLayout(this);
  int row = 0;
  column->addWidget(commands_, row++, 0);
  if (label_)
    column->addWidget(label_, row++, 0);
  column->addLayout(rowOf({editButton_, saveButton_, cancelButton_}), row++, 0);
  QHBoxLayout* choice = rowOf({list_, addButton_, deleteButton_});
  choice->setStretch(0, 2);
  choice->setStretch(1, 1);
  choice->setStretch(2, 1);
  column->addLayout(choice, row++, 0);
  column->addWidget(closeButton_, row, 0);
  setMinimumSize(smallestSize);
  resize(firstSize);
}

// With a large font of the desktop the first size would cut the buttons' texts.
void EditorWidget::makeRoom() {
  layout()->invalidate();  // the font may have changed since they were last measured
  layout()->activate();
  const QSize needed = layout()->minimumSize();
  const bool fits = needed.boundedTo(firstSize) == needed;
  setMinimumSize(fits ? smallestSize : smallestSize.expandedTo(needed));
}

void EditorWidget::nameControls() {
  commands_->setAccessibleName(texts_.commandsName);
  commands_->setToolTip(texts_.commandsUsage);
  list_->setAccessibleName(texts_.title);
  if (label_) {
    label_->setAccessibleName(texts_.labelField->name);
    label_->setToolTip(texts_.labelField->usage);
  }
}

void EditorWidget::setFieldColours() {
  keepLegible(*commands_, palette());
  if (label_)
    keepLegible(*label_, palette());
}

void EditorWidget::setState(State state) {
  const bool editing = state == State::Editing;
  const auto setEditable = [&] {
    commands_->setEnabled(editing);
    if (label_)
      label_->setEnabled(editing);
    saveButton_->setEnabled(editing);
    cancelButton_->setEnabled(editing);
  };
  const auto setBrowsable = [&] {
    list_->setEnabled(!editing);
    addButton_->setEnabled(!editing);
    deleteButton_->setEnabled(!editing);
    editButton_->setEnabled(!editing && list_->currentIndex() >= 0);
  };
  // The focus is moved first, before its control is disabled: the toolkit would
  // move it to the next control on its own.
  if (editing) {
    setEditable();
    commands_->setFocus();
    setBrowsable();
  } else {
    setBrowsable();
    list_->setFocus();
    setEditable();
  }
}

// All labels are added in one call. So the list is complete when its first entry is
// selected, and even ten thousand entries cause only two changes of the selection.
void EditorWidget::listEntries() {
  QStringList labels;
  labels.reserve(entryCount());
  for (qsizetype position = 0; position < entryCount(); ++position)
    labels << labelAt(position);
  list_->clear();
  list_->addItems(labels);
}

bool EditorWidget::isEntry(int position) const {
  return position >= 0 && position < entryCount();
}

void EditorWidget::showEntry(int position) {
  isDraft_ = false;
  QString text;
  QString label;
  if (isEntry(position)) {
    label = labelAt(position);
    for (const QString& command : commandsAt(position))
      text += command + u'\n';
  }
  commands_->setPlainText(text);
  commands_->moveCursor(QTextCursor::End);
  if (label_)
    label_->setText(label);
  editButton_->setEnabled(isEntry(position));
}

void EditorWidget::editEntry() {
  setState(State::Editing);
}

void EditorWidget::saveEntry() {
  const QString label = label_ ? withoutLineBreaks(label_->text()) : QString();
  if (label_ && label.isEmpty()) {
    refuse(texts_.labelField->emptyRefused);
    return;
  }
  const QString commands = commands_->toPlainText();
  if (isDraft_)
    appendDraft(label);
  setState(State::Browsing);
  const int position = list_->currentIndex();
  if (isEntry(position)) {
    // A quirk kept on purpose: the field shows a line break behind the last
    // command, too, so that saving adds an empty command.
    setCommandsAt(position, commands.split(u'\n'));
    if (label_ && label_->text() != labelAt(position)) {
      setLabelAt(position, label);
      list_->setItemText(position, label);
      label_->setText(label);
    }
  }
  writeFile();
}

void EditorWidget::cancelEntry() {
  if (isDraft_)
    list_->setCurrentIndex(list_->count() > 0 ? 0 : -1);
  setState(State::Browsing);
  showEntry(list_->currentIndex());
}

void EditorWidget::deleteEntry() {
  const auto answer =
      QMessageBox::question(this, texts_.deleteQuestion.title, texts_.deleteQuestion.text,
                            QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
  const int position = list_->currentIndex();
  if (answer != QMessageBox::Yes || !isEntry(position))
    return;
  removeAt(position);
  listEntries();
  writeFile();
  list_->setCurrentIndex(list_->count() - 1);
}

qsizetype EditorWidget::positionOf(const QString& label) const {
  for (qsizetype position = 0; position < entryCount(); ++position)
    if (labelAt(position) == label)
      return position;
  return -1;
}

void EditorWidget::editEntryAt(qsizetype position) {
  list_->setCurrentIndex(static_cast<int>(position));
  editEntry();
}

void EditorWidget::beginDraft(const QString& label) {
  list_->setCurrentIndex(-1);
  showEntry(-1);
  label_->setText(label);
  isDraft_ = true;
  editEntry();
}

/// Lists it as well, and selects it.
void EditorWidget::appendDraft(const QString& label) {
  appendEntry(label);
  list_->addItem(label);
  list_->setCurrentIndex(list_->count() - 1);
  showEntry(list_->currentIndex());
}

void EditorWidget::refuse(const Notice& notice) {
  QMessageBox::information(this, notice.title, notice.text, QMessageBox::Ok);
}

void EditorWidget::showAppended() {
  editButton_->setEnabled(true);
  list_->addItem(labelAt(entryCount() - 1));
  writeFile();
  list_->setCurrentIndex(list_->count() - 1);
  showEntry(list_->currentIndex());
}

void EditorWidget::setLabelAt(qsizetype /*position*/, const QString& /*label*/) {}

void EditorWidget::appendEntry(const QString& /*label*/) {}

// Since no button is a default button, Enter would not press the button that has
// the focus either.
void EditorWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (auto* button = qobject_cast<QPushButton*>(focusWidget()))
      button->click();
    return;
  }
  QDialog::keyPressEvent(event);
}

// The player may switch the desktop to dark colours while the program runs.
void EditorWidget::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange)
    setFieldColours();
}

}  // namespace kelmora::automation

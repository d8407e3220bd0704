#include "automation/editors/EditorWidget.h"

#include <QComboBox>
#include <QEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <utility>

#include "automation/core/LineBreaks.h"

namespace kelmora::automation {

EditorWidget::EditorWidget(EditorTexts texts, QWidget* parent)
    : QDialog(parent), texts_(std::move(texts)), form_(*this, texts_) {
  setWindowTitle(texts_.title);
  setWindowIcon(QIcon(texts_.iconPath));
  setModal(true);
  form_.setEditing(false);
}

void EditorWidget::showEditor() {
  // Without entries the list would not say that another one is selected.
  if (isDraft_)
    showEntry(-1);
  listEntries();
  form_.setEditing(false);
  form_.makeRoom();
  show();
}

// All labels are added in one call. So the list is complete when its first entry is
// selected, and even ten thousand entries cause only two changes of the selection.
void EditorWidget::listEntries() {
  QStringList labels;
  labels.reserve(entryCount());
  for (qsizetype position = 0; position < entryCount(); ++position)
    labels << labelAt(position);
  form_.list->clear();
  form_.list->addItems(labels);
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
  form_.commands->setPlainText(text);
  form_.commands->moveCursor(QTextCursor::End);
  if (form_.label)
    form_.label->setText(label);
  form_.editButton->setEnabled(isEntry(position));
}

void EditorWidget::editEntry() {
  form_.setEditing(true);
}

void EditorWidget::saveEntry() {
  const QString label = form_.label ? withoutLineBreaks(form_.label->text()) : QString();
  if (form_.label && label.isEmpty()) {
    refuse(texts_.labelField->emptyRefused);
    return;
  }
  const QString commands = form_.commands->toPlainText();
  if (isDraft_)
    appendDraft(label);
  form_.setEditing(false);
  const int position = form_.list->currentIndex();
  if (isEntry(position)) {
    // A quirk kept on purpose: the field shows a line break behind the last
    // command, too, so that saving adds an empty command.
    setCommandsAt(position, commands.split(u'\n'));
    if (form_.label && form_.label->text() != labelAt(position)) {
      setLabelAt(position, label);
      form_.list->setItemText(position, label);
      form_.label->setText(label);
    }
  }
  writeFile();
}

void EditorWidget::cancelEntry() {
  if (isDraft_)
    form_.list->setCurrentIndex(form_.list->count() > 0 ? 0 : -1);
  form_.setEditing(false);
  showEntry(form_.list->currentIndex());
}

void EditorWidget::deleteEntry() {
  const auto answer =
      QMessageBox::question(this, texts_.deleteQuestion.title, texts_.deleteQuestion.text,
                            QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
  const int position = form_.list->currentIndex();
  if (answer != QMessageBox::Yes || !isEntry(position))
    return;
  removeAt(position);
  listEntries();
  writeFile();
  form_.list->setCurrentIndex(form_.list->count() - 1);
}

qsizetype EditorWidget::positionOf(const QString& label) const {
  for (qsizetype position = 0; position < entryCount(); ++position)
    if (labelAt(position) == label)
      return position;
  return -1;
}

void EditorWidget::editEntryAt(qsizetype position) {
  form_.list->setCurrentIndex(static_cast<int>(position));
  editEntry();
}

void EditorWidget::beginDraft(const QString& label) {
  form_.list->setCurrentIndex(-1);
  showEntry(-1);
  form_.label->setText(label);
  isDraft_ = true;
  editEntry();
}

/// Lists it as well, and selects it.
void EditorWidget::appendDraft(const QString& label) {
  appendEntry(label);
  form_.list->addItem(label);
  form_.list->setCurrentIndex(form_.list->count() - 1);
  showEntry(form_.list->currentIndex());
}

void EditorWidget::refuse(const Notice& notice) {
  QMessageBox::information(this, notice.title, notice.text, QMessageBox::Ok);
}

void EditorWidget::showAppended() {
  form_.editButton->setEnabled(true);
  form_.list->addItem(labelAt(entryCount() - 1));
  writeFile();
  form_.list->setCurrentIndex(form_.list->count() - 1);
  showEntry(form_.list->currentIndex());
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
    form_.setFieldColours();
}

}  // namespace kelmora::automation

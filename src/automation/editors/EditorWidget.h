#pragma once

#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QString>
#include <QStringList>

#include "automation/editors/EditorForm.h"
#include "automation/editors/EditorTexts.h"

namespace kelmora::automation {

/// What the three editors of the automation tables have in common. In one state
/// the player chooses from the list of entries; in the other the player edits the
/// chosen entry, and the list waits. Item i of the list is entry i of the table.
/// Every change reaches the table and its file at once.
///
/// This class declares no slots and has no meta-object of its own. Each final class
/// declares the same seven slots under names of its own.
class EditorWidget : public QDialog {
 public:
  /// Lists the table anew, with the first entry selected, and shows the dialog. The
  /// dialog blocks the other windows, but this function returns at once. Where the
  /// dialog was closed in the middle of an edit, that edit is dropped.
  void showEditor();

 protected:
  /// The slots of a final class, in the order it declares them.
  template <typename Editor>
  struct Slots {
    void (Editor::*selectionChanged)(int);
    void (Editor::*addEntry)();
    void (Editor::*deleteEntry)();
    void (Editor::*editEntry)();
    void (Editor::*saveEntry)();
    void (Editor::*cancelEntry)();
    void (Editor::*closeDialog)();
  };

  EditorWidget(EditorTexts texts, QWidget* parent);

  template <typename Editor>
  void connectSlots(Editor* editor, const Slots<Editor>& to) {
    connect(form_.list, &QComboBox::currentIndexChanged, editor, to.selectionChanged);
    connect(form_.addButton, &QPushButton::clicked, editor, to.addEntry);
    connect(form_.deleteButton, &QPushButton::clicked, editor, to.deleteEntry);
    connect(form_.editButton, &QPushButton::clicked, editor, to.editEntry);
    connect(form_.saveButton, &QPushButton::clicked, editor, to.saveEntry);
    connect(form_.cancelButton, &QPushButton::clicked, editor, to.cancelEntry);
    connect(form_.closeButton, &QPushButton::clicked, editor, to.closeDialog);
  }

  // Access to the table. The positions are always those of entries.
  [[nodiscard]] virtual qsizetype entryCount() const = 0;
  [[nodiscard]] virtual QString labelAt(qsizetype position) const = 0;
  [[nodiscard]] virtual QStringList commandsAt(qsizetype position) const = 0;
  virtual void setCommandsAt(qsizetype position, QStringList commands) = 0;
  /// Only called in editors with a label field.
  virtual void setLabelAt(qsizetype position, const QString& label);
  /// Adds an entry without commands at the end. Only called after beginDraft().
  virtual void appendEntry(const QString& label);
  virtual void removeAt(qsizetype position) = 0;
  /// Writes the table to its file. The player is not told where that fails.
  virtual void writeFile() = 0;

  // What the final class's slots do.
  void showEntry(int position);
  void editEntry();
  void saveEntry();
  void cancelEntry();
  void deleteEntry();

  // The parts of adding an entry, which each final class does in its own way.
  /// Of the first entry with that label; -1 if there is none.
  [[nodiscard]] qsizetype positionOf(const QString& label) const;
  void editEntryAt(qsizetype position);
  /// Begins to edit an entry that is not in the table, nor listed, until it is saved.
  void beginDraft(const QString& label);
  void refuse(const Notice& notice);
  /// Lists and selects the entry that was added at the end of the table, and writes
  /// the file.
  void showAppended();
  /// Only for editors with a label field.
  [[nodiscard]] const LabelField& labelField() const { return *texts_.labelField; }

  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void listEntries();
  [[nodiscard]] bool isEntry(int position) const;
  void appendDraft(const QString& label);

  const EditorTexts texts_;
  bool isDraft_ = false;  // whether what is edited is not in the table yet
  EditorForm form_;
};

}  // namespace kelmora::automation

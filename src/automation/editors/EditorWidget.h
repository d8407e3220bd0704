#pragma once

#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QString>
#include <QStringList>

#include "automation/editors/EditorTexts.h"

class QLineEdit;
class QPlainTextEdit;

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
    connect(list_, &QComboBox::currentIndexChanged, editor, to.selectionChanged);
    connect(addButton_, &QPushButton::clicked, editor, to.addEntry);
    connect(deleteButton_, &QPushButton::clicked, editor, to.deleteEntry);
    connect(editButton_, &QPushButton::clicked, editor, to.editEntry);
    connect(saveButton_, &QPushButton::clicked, editor, to.saveEntry);
    connect(cancelButton_, &QPushButton::clicked, editor, to.cancelEntry);
    connect(closeButton_, &QPushButton::clicked, editor, to.closeDialog);
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
  enum class State { Browsing, Editing };

  void createControls();
  void layOutControls();
  void makeRoom();
  void nameControls();
  void setFieldColours();
  void setState(State state);
  void listEntries();
  [[nodiscard]] bool isEntry(int position) const;
  void appendDraft(const QString& label);

  const EditorTexts texts_;
  bool isDraft_ = false;  // whether what is edited is not in the table yet
  // Children of the dialog. The label field is null where labels cannot be changed.
  QPlainTextEdit* commands_ = nullptr;
  QLineEdit* label_ = nullptr;
  QPushButton* editButton_ = nullptr;
  QPushButton* saveButton_ = nullptr;
  QPushButton* cancelButton_ = nullptr;
  QComboBox* list_ = nullptr;
  QPushButton* addButton_ = nullptr;
  QPushButton* deleteButton_ = nullptr;
  QPushButton* closeButton_ = nullptr;
};

}  // namespace kelmora::automation

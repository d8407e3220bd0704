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

/// What the editors of the automation tables have in common: a list of the
/// entries, which is browsed, and one entry, which is edited. Item i of the
/// list is entry i of the table. Every change reaches the table and its file at
/// once.
///
/// It declares no slots and has no meta-object of its own: those belong to the
/// final classes, each of which has its own words for the same seven slots.
class EditorWidget : public QDialog {
 public:
  /// Lists the table afresh, first entry selected, and shows the dialog, which
  /// blocks the other windows but not the caller. An edit that an earlier
  /// closing left open is dropped.
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

  // The table. Positions handed over are those of entries.
  [[nodiscard]] virtual qsizetype entryCount() const = 0;
  [[nodiscard]] virtual QString labelAt(qsizetype position) const = 0;
  [[nodiscard]] virtual QStringList commandsAt(qsizetype position) const = 0;
  virtual void setCommandsAt(qsizetype position, QStringList commands) = 0;
  /// Called only where there is a label field.
  virtual void setLabelAt(qsizetype position, const QString& label);
  virtual void removeAt(qsizetype position) = 0;
  /// Rewrites the table's file; a failure is nobody's concern.
  virtual void writeFile() = 0;

  // What the slots do.
  void showEntry(int position);
  void editEntry();
  void saveEntry();
  void cancelEntry();
  void deleteEntry();

  // What an addition is made of.
  [[nodiscard]] bool hasLabel(const QString& label) const;
  void refuse(const Notice& notice);
  /// Lists the entry that the table has got at its end, and selects it.
  void showAppended();

  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  enum class State { Browsing, Editing };

  void createControls();
  void layOutControls();
  void nameControls();
  void dressFields();
  void setState(State state);
  void listEntries();
  [[nodiscard]] bool isEntry(int position) const;

  const EditorTexts texts_;
  // Children of the dialog. The label field is null where labels are fixed.
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

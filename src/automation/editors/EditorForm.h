#pragma once

class QComboBox;
class QDialog;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace kelmora::automation {

struct EditorTexts;

/// What one sees of an editor. The controls are children of its dialog.
class EditorForm {
 public:
  /// The dialog outlives this.
  EditorForm(QDialog& dialog, const EditorTexts& texts);

  QPlainTextEdit* commands = nullptr;
  QLineEdit* label = nullptr;  ///< null where labels cannot be changed
  QPushButton* editButton = nullptr;
  QPushButton* saveButton = nullptr;
  QPushButton* cancelButton = nullptr;
  QComboBox* list = nullptr;
  QPushButton* addButton = nullptr;
  QPushButton* deleteButton = nullptr;
  QPushButton* closeButton = nullptr;

  /// Either the fields can be used or the list.
  void setEditing(bool editing);
  /// To be called before the dialog is shown.
  void makeRoom();
  /// To be called when the desktop has other colours.
  void setFieldColours();

 private:
  void create(const EditorTexts& texts);
  void layOut();
  void name(const EditorTexts& texts);

  QDialog& dialog_;
};

}  // namespace kelmora::automation

#pragma once

#include <QString>
#include <optional>

namespace kelmora::automation {

/// The title and the text of a message box.
struct Notice {
  QString title;
  QString text;
};

/// The words for labels that the player types: a trigger's pattern, an alias's name.
struct LabelField {
  QString name;   ///< of the field, for screen readers
  QString usage;  ///< the field's tool tip
  /// The label of a new entry, until the player gives it another one.
  QString placeholder;
  Notice placeholderTaken;  ///< shown where an entry still has the placeholder
  Notice emptyRefused;      ///< shown where a label is to be saved empty
};

/// All the words in which one editor differs from the others, translated.
struct EditorTexts {
  QString title;  ///< of the window, and the name of its list for screen readers
  QString iconPath;

  QString editButton;
  QString saveButton;
  QString cancelButton;
  QString addButton;
  QString deleteButton;
  QString closeButton;

  QString commandsName;                       ///< of the field of commands, for screen readers
  QString commandsUsage;                      ///< the tool tip of that field
  std::optional<LabelField> labelField = {};  ///< none where labels cannot be changed

  Notice deleteQuestion;
};

}  // namespace kelmora::automation

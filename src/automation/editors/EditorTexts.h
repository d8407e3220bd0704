#pragma once

#include <QString>
#include <optional>

namespace kelmora::automation {

/// What a message box says.
struct Notice {
  QString title;
  QString text;
};

/// The field of an editor whose entries can be renamed.
struct LabelField {
  QString name;   ///< for who cannot see the field
  QString usage;  ///< shown as its tool tip
  Notice emptyRefusal;
};

/// Every word by which one editor differs from the others, translated.
struct EditorTexts {
  QString title;  ///< also the name of the list, for who cannot see it
  QString iconPath;

  QString editButton;
  QString saveButton;
  QString cancelButton;
  QString addButton;
  QString deleteButton;
  QString closeButton;

  QString commandsName;   ///< for who cannot see the field
  QString commandsUsage;  ///< shown as its tool tip
  std::optional<LabelField> labelField = {};

  Notice deleteQuestion;
};

}  // namespace kelmora::automation

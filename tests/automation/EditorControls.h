// An editor's controls under short names, and what can be seen of them at a glance.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <utility>

#include "support/Controls.h"

/// The controls of an editor. The buttons are found by their texts, as by a player;
/// `entry` is the word for an entry in these texts.
class EditorControls {
 public:
  EditorControls(QDialog& dialog, const QString& entry)
      : list(dialog.findChild<QComboBox*>()),
        commands(dialog.findChild<QPlainTextEdit*>()),
        label(dialog.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly)),
        edit(buttonOf(dialog, QStringLiteral("Edit ") + entry)),
        save(buttonOf(dialog, QStringLiteral("Save ") + entry)),
        cancel(buttonOf(dialog, QStringLiteral("Cancel %1 edit").arg(entry))),
        add(buttonOf(dialog, QStringLiteral("Add ") + entry)),
        remove(buttonOf(dialog, QStringLiteral("Delete ") + entry)),
        close(buttonOf(dialog, QStringLiteral("Close"))) {}

  [[nodiscard]] bool complete() const {
    return list && commands && edit && save && cancel && add && remove && close;
  }

  /// The words for the controls that are enabled, in the order in which they are read.
  [[nodiscard]] QString enabled() const {
    QStringList words;
    for (const auto& [control, word] : named()) {
      if (control && control->isEnabled())
        words << word;
    }
    return words.join(u' ');
  }

  /// The word for the control that has the focus.
  [[nodiscard]] QString focused() const {
    for (const auto& [control, word] : named()) {
      if (control && control->hasFocus())
        return word;
    }
    return {};
  }

  [[nodiscard]] QStringList items() const { return itemsOf(*list); }

  [[nodiscard]] QList<std::pair<QWidget*, QString>> named() const {
    return {{commands, "commands"}, {label, "label"},   {edit, "edit"},
            {save, "save"},         {cancel, "cancel"}, {list, "list"},
            {add, "add"},           {remove, "delete"}, {close, "close"}};
  }

  QComboBox* list;
  QPlainTextEdit* commands;
  QLineEdit* label;  // null where labels cannot be changed
  QPushButton* edit;
  QPushButton* save;
  QPushButton* cancel;
  QPushButton* add;
  QPushButton* remove;
  QPushButton* close;
};

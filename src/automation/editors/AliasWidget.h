#pragma once

#include "automation/core/AliasTable.h"
#include "automation/core/AutomationFiles.h"
#include "automation/editors/TableEditorWidget.h"

/// Lists, adds, deletes and edits aliases.
class AliasWidget
    : public kelmora::automation::LabelEditorWidget<kelmora::automation::AliasTable,
                                                    &kelmora::automation::AliasEntry::name,
                                                    &kelmora::automation::AliasTable::rename> {
  Q_OBJECT

 public:
  AliasWidget(kelmora::automation::AliasTable& table, kelmora::automation::AutomationFiles& files,
              QWidget* parent);

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void selectionChanged(int index) { showEntry(index); }
  void addAlias() { addEntry(); }
  void deleteAlias() { deleteEntry(); }
  void editAlias() { editEntry(); }
  void saveAlias() { saveEntry(); }
  void cancelAlias() { cancelEntry(); }
  void closeDialog() { close(); }
};

#pragma once

#include "automation/core/AutomationFiles.h"
#include "automation/core/TriggerTable.h"
#include "automation/editors/TableEditorWidget.h"

/// Lists, adds, deletes and edits triggers.
class TriggerWidget
    : public kelmora::automation::LabelEditorWidget<
          kelmora::automation::TriggerTable, &kelmora::automation::TriggerEntry::pattern,
          &kelmora::automation::TriggerTable::setPattern> {
  Q_OBJECT

 public:
  TriggerWidget(kelmora::automation::TriggerTable& table,
                kelmora::automation::AutomationFiles& files, QWidget* parent);

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void selectionChanged(int index) { showEntry(index); }
  void addTrigger() { addEntry(); }
  void deleteTrigger() { deleteEntry(); }
  void editTrigger() { editEntry(); }
  void saveTrigger() { saveEntry(); }
  void cancelTrigger() { cancelEntry(); }
  void closeDialog() { close(); }
};

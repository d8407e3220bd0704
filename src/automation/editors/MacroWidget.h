#pragma once

#include "automation/core/AutomationFiles.h"
#include "automation/core/MacroTable.h"
#include "automation/editors/TableEditorWidget.h"

class KeyPressWidget;

/// Lists, adds, deletes and edits macros. The key of a macro cannot be changed; for
/// another key the player adds another macro.
class MacroWidget : public kelmora::automation::TableEditorWidget<kelmora::automation::MacroTable> {
  Q_OBJECT

 public:
  MacroWidget(kelmora::automation::MacroTable& table, kelmora::automation::AutomationFiles& files,
              QWidget* parent);

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void selectionChanged(int index) { showEntry(index); }
  void addMacro();
  void deleteMacro() { deleteEntry(); }
  void editMacro() { editEntry(); }
  void saveMacro() { saveEntry(); }
  void cancelMacro() { cancelEntry(); }
  void closeDialog() { close(); }

 private:
  [[nodiscard]] QString labelAt(qsizetype position) const override;

  KeyPressWidget* keyPress_;  // child of the dialog
};

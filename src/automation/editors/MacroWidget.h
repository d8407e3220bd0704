#pragma once

#include "automation/core/MacroTable.h"
#include "automation/editors/TableEditorWidget.h"

class KeyPressWidget;

/// Lists, adds, deletes and edits macros. A key is bound for good: another one
/// takes a new macro.
class MacroWidget : public kelmora::automation::TableEditorWidget<kelmora::automation::MacroTable> {
  Q_OBJECT

 public:
  MacroWidget(kelmora::automation::MacroTable& table, kelmora::automation::AutomationFiles& files,
              QWidget* parent);

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void selectionChanged(int index);
  void addMacro();
  void deleteMacro();
  void editMacro();
  void saveMacro();
  void cancelMacro();
  void closeDialog();

 private:
  [[nodiscard]] QString labelAt(qsizetype position) const override;
  void writeFile() override;

  KeyPressWidget* keyPress_;  // child of the dialog
};

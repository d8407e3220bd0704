#include "automation/editors/MacroWidget.h"

#include "automation/core/KeyNames.h"
#include "automation/editors/KeyPressInput.h"
#include "automation/editors/KeyPressWidget.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

EditorTexts texts() {
  return {
      .title = MacroWidget::tr("Macros"),
      .iconPath = QStringLiteral(":/icons/macros.png"),
      .editButton = MacroWidget::tr("Edit macro"),
      .saveButton = MacroWidget::tr("Save macro"),
      .cancelButton = MacroWidget::tr("Cancel macro edit"),
      .addButton = MacroWidget::tr("Add macro"),
      .deleteButton = MacroWidget::tr("Delete macro"),
      .closeButton = MacroWidget::tr("Close"),
      .commandsName = MacroWidget::tr("Commands"),
      .commandsUsage = MacroWidget::tr("The commands run when the key is pressed, one per line"),
      .deleteQuestion = {MacroWidget::tr("Delete Macro"),
                         MacroWidget::tr("Really delete this macro?")}};
}

}  // namespace

MacroWidget::MacroWidget(MacroTable& table, AutomationFiles& files, QWidget* parent)
    : TableEditorWidget(
          texts(), table, [&table, &files] { (void)files.writeMacros(table); }, parent),
      keyPress_(new KeyPressWidget(this)) {
  connectSlots<MacroWidget>(
      this, {&MacroWidget::selectionChanged, &MacroWidget::addMacro, &MacroWidget::deleteMacro,
             &MacroWidget::editMacro, &MacroWidget::saveMacro, &MacroWidget::cancelMacro,
             &MacroWidget::closeDialog});
}

void MacroWidget::addMacro() {
  const qint32 key = keyPress_->captureKey();
  if (key == KeyPressInput::noKey)
    return;
  if (table().commandsOf(key)) {
    refuse({tr("Add Macro"), tr("A macro has already been bound to that key.")});
    return;
  }
  table().append({.key = key});
  showAppended();
}

QString MacroWidget::labelAt(qsizetype position) const {
  return keyCodeToName(table().entries().at(position).key);
}

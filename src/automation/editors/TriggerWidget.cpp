#include "automation/editors/TriggerWidget.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

EditorTexts texts() {
  return {
      .title = TriggerWidget::tr("Triggers"),
      .iconPath = QStringLiteral(":/icons/triggers.png"),
      .editButton = TriggerWidget::tr("Edit trigger"),
      .saveButton = TriggerWidget::tr("Save trigger"),
      .cancelButton = TriggerWidget::tr("Cancel trigger edit"),
      .addButton = TriggerWidget::tr("Add trigger"),
      .deleteButton = TriggerWidget::tr("Delete trigger"),
      .closeButton = TriggerWidget::tr("Close"),
      .commandsName = TriggerWidget::tr("Commands"),
      .commandsUsage =
          TriggerWidget::tr("The commands run for every line that matches, one per line"),
      .labelField =
          LabelField{.name = TriggerWidget::tr("Pattern"),
                     .usage = TriggerWidget::tr("Text to find anywhere in a line; or, with {*} for "
                                                "each word to catch, the line from its start"),
                     .placeholder = TriggerWidget::tr("<Enter your trigger pattern here>"),
                     .placeholderTaken = {TriggerWidget::tr("Add Trigger"),
                                          TriggerWidget::tr(
                                              "A trigger has already been bound to that pattern.")},
                     .emptyRefused = {TriggerWidget::tr("Save Trigger"),
                                      TriggerWidget::tr("Invalid trigger pattern specified.")}},
      .deleteQuestion = {TriggerWidget::tr("Delete Trigger"),
                         TriggerWidget::tr("Really delete this trigger?")}};
}

}  // namespace

TriggerWidget::TriggerWidget(TriggerTable& table, AutomationFiles& files, QWidget* parent)
    : LabelEditorWidget(
          texts(), table, [&table, &files] { (void)files.writeTriggers(table); }, parent) {
  connectSlots<TriggerWidget>(this, {&TriggerWidget::selectionChanged, &TriggerWidget::addTrigger,
                                     &TriggerWidget::deleteTrigger, &TriggerWidget::editTrigger,
                                     &TriggerWidget::saveTrigger, &TriggerWidget::cancelTrigger,
                                     &TriggerWidget::closeDialog});
}

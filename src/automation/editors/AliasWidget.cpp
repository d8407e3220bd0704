#include "automation/editors/AliasWidget.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

EditorTexts texts() {
  return {.title = AliasWidget::tr("Aliases"),
          .iconPath = QStringLiteral(":/icons/aliases.png"),
          .editButton = AliasWidget::tr("Edit alias"),
          .saveButton = AliasWidget::tr("Save alias"),
          .cancelButton = AliasWidget::tr("Cancel alias edit"),
          .addButton = AliasWidget::tr("Add alias"),
          .deleteButton = AliasWidget::tr("Delete alias"),
          .closeButton = AliasWidget::tr("Close"),
          .commandsName = AliasWidget::tr("Commands"),
          .commandsUsage = AliasWidget::tr("The commands run in place of the alias, one per line"),
          .labelField =
              LabelField{
                  .name = AliasWidget::tr("Alias"),
                  .usage = AliasWidget::tr("What to type, to the letter, to run the commands"),
                  .placeholder = AliasWidget::tr("<Enter your alias here>"),
                  .placeholderTaken = {AliasWidget::tr("Add Alias"),
                                       AliasWidget::tr("An alias already exists with that name.")},
                  .emptyRefused = {AliasWidget::tr("Save Alias"),
                                   AliasWidget::tr("Invalid alias name specified.")}},
          .deleteQuestion = {AliasWidget::tr("Delete Alias"),
                             AliasWidget::tr("Really delete this alias?")}};
}

}  // namespace

AliasWidget::AliasWidget(AliasTable& table, AutomationFiles& files, QWidget* parent)
    : LabelEditorWidget(
          texts(), table, [&table, &files] { (void)files.writeAliases(table); }, parent) {
  connectSlots<AliasWidget>(
      this, {&AliasWidget::selectionChanged, &AliasWidget::addAlias, &AliasWidget::deleteAlias,
             &AliasWidget::editAlias, &AliasWidget::saveAlias, &AliasWidget::cancelAlias,
             &AliasWidget::closeDialog});
}

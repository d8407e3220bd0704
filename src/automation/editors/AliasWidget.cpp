#include "automation/editors/AliasWidget.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

EditorTexts texts() {
  return {
      .title = AliasWidget::tr("Aliases"),
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
          LabelField{.name = AliasWidget::tr("Alias"),
                     .usage = AliasWidget::tr("What to type, to the letter, to run the commands"),
                     .emptyRefusal = {AliasWidget::tr("Save Alias"),
                                      AliasWidget::tr("Invalid alias name specified.")}},
      .deleteQuestion = {AliasWidget::tr("Delete Alias"),
                         AliasWidget::tr("Really delete this alias?")}};
}

}  // namespace

AliasWidget::AliasWidget(AliasTable& table, AutomationFiles& files, QWidget* parent)
    : TableEditorWidget(texts(), table, files, parent) {
  connectSlots<AliasWidget>(
      this, {&AliasWidget::selectionChanged, &AliasWidget::addAlias, &AliasWidget::deleteAlias,
             &AliasWidget::editAlias, &AliasWidget::saveAlias, &AliasWidget::cancelAlias,
             &AliasWidget::closeDialog});
}

void AliasWidget::selectionChanged(int index) {
  showEntry(index);
}

void AliasWidget::addAlias() {
  const QString name = tr("<Enter your alias here>");
  if (hasLabel(name)) {
    refuse({tr("Add Alias"), tr("An alias already exists with that name.")});
    return;
  }
  table().append({.name = name});
  showAppended();
}

void AliasWidget::deleteAlias() {
  deleteEntry();
}

void AliasWidget::editAlias() {
  editEntry();
}

void AliasWidget::saveAlias() {
  saveEntry();
}

void AliasWidget::cancelAlias() {
  cancelEntry();
}

void AliasWidget::closeDialog() {
  close();
}

QString AliasWidget::labelAt(qsizetype position) const {
  return table().entries().at(position).name;
}

void AliasWidget::setLabelAt(qsizetype position, const QString& label) {
  table().rename(position, label);
}

void AliasWidget::writeFile() {
  (void)files().writeAliases(table());
}

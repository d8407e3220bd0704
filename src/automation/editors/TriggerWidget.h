#pragma once

#include "automation/core/TriggerTable.h"
#include "automation/editors/TableEditorWidget.h"

/// Lists, adds, deletes and edits triggers.
class TriggerWidget
    : public kelmora::automation::TableEditorWidget<kelmora::automation::TriggerTable> {
  Q_OBJECT

 public:
  TriggerWidget(kelmora::automation::TriggerTable& table,
                kelmora::automation::AutomationFiles& files, QWidget* parent);

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void selectionChanged(int index);
  void addTrigger();
  void deleteTrigger();
  void editTrigger();
  void saveTrigger();
  void cancelTrigger();
  void closeDialog();

 private:
  [[nodiscard]] QString labelAt(qsizetype position) const override;
  void setLabelAt(qsizetype position, const QString& label) override;
  void writeFile() override;
};

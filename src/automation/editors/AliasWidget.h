#pragma once

#include "automation/core/AliasTable.h"
#include "automation/editors/TableEditorWidget.h"

/// Lists, adds, deletes and edits aliases.
class AliasWidget : public kelmora::automation::TableEditorWidget<kelmora::automation::AliasTable> {
  Q_OBJECT

 public:
  AliasWidget(kelmora::automation::AliasTable& table, kelmora::automation::AutomationFiles& files,
              QWidget* parent);

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void selectionChanged(int index);
  void addAlias();
  void deleteAlias();
  void editAlias();
  void saveAlias();
  void cancelAlias();
  void closeDialog();

 private:
  [[nodiscard]] QString labelAt(qsizetype position) const override;
  void setLabelAt(qsizetype position, const QString& label) override;
  void writeFile() override;
};

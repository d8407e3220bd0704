#pragma once

#include <QWidget>
#include <utility>

#include "automation/core/AutomationFiles.h"
#include "automation/editors/EditorWidget.h"

namespace kelmora::automation {

/// An editor of one kind of table. The table and its file outlive it.
template <typename Table>
class TableEditorWidget : public EditorWidget {
 protected:
  TableEditorWidget(EditorTexts texts, Table& table, AutomationFiles& files, QWidget* parent)
      : EditorWidget(std::move(texts), parent), table_(table), files_(files) {}

  [[nodiscard]] Table& table() const { return table_; }
  [[nodiscard]] AutomationFiles& files() const { return files_; }

  [[nodiscard]] qsizetype entryCount() const override { return table_.size(); }
  [[nodiscard]] QStringList commandsAt(qsizetype position) const override {
    return table_.entries().at(position).commands;
  }
  void setCommandsAt(qsizetype position, QStringList commands) override {
    table_.setCommands(position, std::move(commands));
  }
  void removeAt(qsizetype position) override { table_.removeAt(position); }

 private:
  Table& table_;
  AutomationFiles& files_;
};

}  // namespace kelmora::automation

#pragma once

#include <QWidget>
#include <utility>

#include "automation/editors/EditorWidget.h"

/// An editor of one kind of table. The table outlives it.
template <typename Table>
class TableEditorWidget : public EditorWidget {
 protected:
  TableEditorWidget(EditorTexts texts, Table& table, QWidget* parent)
      : EditorWidget(std::move(texts), parent), table_(table) {}

  [[nodiscard]] Table& table() const { return table_; }

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
};

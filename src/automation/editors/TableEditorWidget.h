#pragma once

#include <QWidget>
#include <functional>
#include <utility>

#include "automation/editors/EditorWidget.h"

namespace kelmora::automation {

/// An editor of one kind of table.
template <typename Table>
class TableEditorWidget : public EditorWidget {
 protected:
  /// The table, and what `writeTable` refers to, must outlive the editor.
  TableEditorWidget(EditorTexts texts, Table& table, std::function<void()> writeTable,
                    QWidget* parent)
      : EditorWidget(std::move(texts), parent), table_(table), writeTable_(std::move(writeTable)) {}

  [[nodiscard]] Table& table() const { return table_; }

  [[nodiscard]] qsizetype entryCount() const override { return table_.size(); }
  [[nodiscard]] QStringList commandsAt(qsizetype position) const override {
    return table_.entries().at(position).commands;
  }
  void setCommandsAt(qsizetype position, QStringList commands) override {
    table_.setCommands(position, std::move(commands));
  }
  void removeAt(qsizetype position) override { table_.removeAt(position); }
  void writeFile() override { writeTable_(); }

 private:
  Table& table_;
  std::function<void()> writeTable_;
};

/// An editor of a table whose labels the player types. `Label` is the member of an
/// entry that holds its label, `SetLabel` the table's function that changes it.
template <typename Table, auto Label, auto SetLabel>
class LabelEditorWidget : public TableEditorWidget<Table> {
 public:
  /// Shows the editor with the first entry of that label, ready to be edited. If
  /// there is none, a new one is ready, which gets into table and file when it is
  /// saved.
  void showEditorFor(const QString& label) {
    this->showEditor();
    if (const qsizetype position = this->positionOf(label); position >= 0)
      this->editEntryAt(position);
    else
      this->beginDraft(label);
  }

 protected:
  using TableEditorWidget<Table>::TableEditorWidget;

  [[nodiscard]] QString labelAt(qsizetype position) const override {
    return this->table().entries().at(position).*Label;
  }
  void setLabelAt(qsizetype position, const QString& label) override {
    (this->table().*SetLabel)(position, label);
  }
  void appendEntry(const QString& label) override { this->table().append({label}); }

  /// Adds an entry with the placeholder as its label and no commands.
  void addEntry() {
    const LabelField& field = this->labelField();
    if (this->positionOf(field.placeholder) >= 0) {
      this->refuse(field.placeholderTaken);
      return;
    }
    this->table().append({field.placeholder});
    this->showAppended();
  }
};

}  // namespace kelmora::automation

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

#include "automation/core/Entries.h"

namespace kelmora::automation {

class TriggerMatcher;

/// What a trigger needs of the window when it fires.
class TriggerHost {
 public:
  virtual ~TriggerHost() = default;

  /// Creates the variable, or gives it a new value.
  virtual void setVariable(const QString& name, const QString& value) = 0;

  /// Runs the commands at once, up to the first pause among them.
  virtual void runActions(const QStringList& commands) = 0;
};

/// The player's triggers in their order. Each one whose pattern matches a line fires,
/// also where several have the same pattern. An operation on a position outside the
/// table does nothing.
class TriggerTable {
 public:
  [[nodiscard]] const QList<TriggerEntry>& entries() const { return entries_; }
  [[nodiscard]] qsizetype size() const { return entries_.size(); }

  void append(TriggerEntry entry);
  void removeAt(qsizetype position);
  void setPattern(qsizetype position, QString pattern);
  void setCommands(qsizetype position, QStringList commands);

  /// Fires every trigger whose pattern matches the line, in the table's order. First
  /// the words that the pattern captured become the variables _trigOut0 to _trigOut9,
  /// then the commands run, and then the next trigger is tried. A trigger that
  /// captures fewer words leaves the variables of higher numbers as they are.
  ///
  /// Commands may change the table. This line goes on with the table as it was; the
  /// change counts from the next line on.
  void check(const QByteArray& line, TriggerHost& host);

 private:
  [[nodiscard]] bool contains(qsizetype position) const;

  QList<TriggerEntry> entries_;
  // Built when the first line after a change is checked. So a long table that is
  // loaded entry by entry is compiled only once.
  std::shared_ptr<const TriggerMatcher> matcher_;
};

}  // namespace kelmora::automation

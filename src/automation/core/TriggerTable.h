#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

#include "automation/core/Entries.h"

namespace kelmora::automation {

class TriggerMatcher;

/// What a firing trigger needs of the window.
class TriggerHost {
 public:
  virtual ~TriggerHost() = default;

  /// Creates or overwrites a variable.
  virtual void setVariable(const QString& name, const QString& value) = 0;

  /// Runs the commands at once, as far as their first pause.
  virtual void runActions(const QStringList& commands) = 0;
};

/// The player's triggers in their order; patterns may repeat, and each one that
/// matches fires. An operation on a position outside the table does nothing.
class TriggerTable {
 public:
  [[nodiscard]] const QList<TriggerEntry>& entries() const { return entries_; }
  [[nodiscard]] bool isEmpty() const { return entries_.isEmpty(); }
  [[nodiscard]] qsizetype size() const { return entries_.size(); }

  void append(TriggerEntry entry);
  void removeAt(qsizetype position);
  void setPattern(qsizetype position, QString pattern);
  void setCommands(qsizetype position, QStringList commands);
  void clear();

  /// Fires every trigger that the line matches, in table order: the words it
  /// captured are set as _trigOut0 to _trigOut9, then its commands run, then
  /// the next trigger is tried. Variables of higher numbers keep their values.
  ///
  /// A host that changes the table meanwhile changes it for the next line; this
  /// one is finished with the table as it stood.
  void check(const QByteArray& line, TriggerHost& host);

 private:
  [[nodiscard]] bool contains(qsizetype position) const;

  QList<TriggerEntry> entries_;
  // Built at the first line after a change, so that loading a long table
  // compiles it once.
  std::shared_ptr<const TriggerMatcher> matcher_;
};

}  // namespace kelmora::automation

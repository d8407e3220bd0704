#pragma once

#include <QString>

#include "script/Substitution.h"

namespace kelmora::script {

/// The variables of all scripts: text values under names of any form, ordered
/// and compared by UTF-16 code units.
class VariableTable {
 public:
  using Entries = Substitution::Variables;

  /// Longest value and longest result of a substitution, in UTF-16 units; what
  /// is longer is cut. A variable that takes itself in twice doubles with every
  /// command, so a script of thirty lines would otherwise fill any memory. A
  /// command's argument holds 1023 bytes, so nothing written by hand comes near.
  static constexpr qsizetype maximumLength = 65'536;

  /// Creates or overwrites. False when the value had to be cut.
  bool set(const QString& name, const QString& value);
  /// False when there is no such variable.
  [[nodiscard]] bool remove(const QString& name) { return entries_.remove(name) > 0; }
  [[nodiscard]] bool contains(const QString& name) const { return entries_.contains(name); }
  /// Empty for a variable that does not exist.
  [[nodiscard]] QString value(const QString& name) const { return entries_.value(name); }
  [[nodiscard]] qsizetype size() const { return entries_.size(); }

  [[nodiscard]] const Entries& entries() const { return entries_; }
  /// These instead of all there were. A value from there may be longer.
  void load(const Entries& entries);

  /// The text with every "{name}" of a variable replaced by its value, one
  /// pass over the names in ascending order: what a value brings in is replaced
  /// by later names, never by earlier ones. Names of no variable stay.
  [[nodiscard]] QString substituteVariables(const QString& text) const;
  /// The same, broken off after so much work.
  [[nodiscard]] Substitution substitution(const QString& text, qint64 work) const;

 private:
  Entries entries_;
  /// Of all names that were ever there: it saves time, no more.
  qsizetype longestName_ = 0;
};

}  // namespace kelmora::script

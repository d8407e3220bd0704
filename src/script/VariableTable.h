#pragma once

#include <QString>

#include "script/Substitution.h"

namespace kelmora::script {

/// The variables, which all scripts share. Values are texts; any text is a name.
/// Names are compared and ordered by their UTF-16 code units.
class VariableTable {
 public:
  using Entries = Substitution::Variables;

  /// Values and results of a substitution are cut to this many UTF-16 code
  /// units. A script can double a variable with one command, so without a limit
  /// thirty lines would fill any memory. Nothing written by hand comes near,
  /// because an argument of a command has at most 1023 bytes.
  static constexpr qsizetype maximumLength = 65'536;

  /// Creates or overwrites the variable. Returns false if the value was cut.
  bool set(const QString& name, const QString& value);
  /// Returns false if there is no such variable.
  [[nodiscard]] bool remove(const QString& name) { return entries_.remove(name) > 0; }
  [[nodiscard]] bool contains(const QString& name) const { return entries_.contains(name); }
  /// Empty for a variable that does not exist.
  [[nodiscard]] QString value(const QString& name) const { return entries_.value(name); }
  [[nodiscard]] qsizetype size() const { return entries_.size(); }

  [[nodiscard]] const Entries& entries() const { return entries_; }
  /// Replaces all variables. Values are taken as they are, even longer ones.
  void load(const Entries& entries);

  /// The text with every "{name}" replaced by the value of that variable. The
  /// names take their turns once, in ascending order, so a "{name}" inside a value
  /// is replaced only if its turn comes later. Unknown names stay as they are.
  [[nodiscard]] QString substituteVariables(const QString& text) const;
  /// The same, but broken off after so much work, see Substitution::Limits.
  [[nodiscard]] Substitution substitution(const QString& text, qint64 work) const;

 private:
  Entries entries_;
  /// No name is longer. It may be too large, because removing a variable does
  /// not lower it; the search for names then only takes longer.
  qsizetype longestName_ = 0;
};

}  // namespace kelmora::script

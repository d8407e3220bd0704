#pragma once

#include <QMap>
#include <QString>
#include <optional>
#include <set>

namespace kelmora::script {

/// One pass over the names of a table in ascending order, each "{name}" in the
/// text replaced everywhere by its value: what a value brings in, also together
/// with what stands around it, is replaced by later names and never by earlier
/// ones. Names may hold braces, or nothing.
///
/// The pass visits the names that stand in the text and no others. They are
/// looked up in the table behind every opening brace, and once more around what
/// a value was put into.
class Substitution {
 public:
  using Variables = QMap<QString, QString>;

  struct Limits {
    qsizetype longestText;  ///< what has grown longer is cut, in UTF-16 units
    /// In characters looked at, a lookup of a name counting as 64: the rest is
    /// broken off. A text of many braces takes its time where names hold some.
    qint64 work;
  };

  /// No name is longer than that. The variables stay as they are meanwhile.
  Substitution(const Variables& variables, qsizetype longestName, const Limits& limits,
               const QString& text);

  [[nodiscard]] const QString& text() const { return text_; }
  [[nodiscard]] bool wasCut() const { return wasCut_; }
  /// More than the limit where it was broken off.
  [[nodiscard]] qint64 work() const { return work_; }

 private:
  using Variable = Variables::const_iterator;
  struct ByName {
    bool operator()(const Variable& a, const Variable& b) const { return a.key() < b.key(); }
  };

  /// Notes the names that stand behind the opening braces of a part of the text.
  void findNames(qsizetype from, qsizetype to);
  void findNamesBehind(qsizetype brace);
  void note(Variable variable);
  void replace(Variable variable);
  [[nodiscard]] bool isOver() const { return work_ > limits_.work; }

  const Variables& variables_;
  qsizetype longestName_;
  Limits limits_;
  QString text_;
  bool wasCut_ = false;
  qint64 work_ = 0;
  /// Names in the text whose turn is still to come.
  std::set<Variable, ByName> waiting_;
  std::optional<Variable> latest_;
};

}  // namespace kelmora::script

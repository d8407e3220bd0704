#pragma once

#include <QMap>
#include <QString>
#include <optional>
#include <set>

namespace kelmora::script {

/// Replaces "{name}" in a text by the values of variables. The result is that of
/// going once through all names in ascending order and replacing each of them
/// everywhere in the text. A replacement may therefore form another "{name}", by
/// itself or with the text around it; that one is replaced if its turn comes
/// later, and stays if it has passed. A name may contain braces or be empty.
///
/// There may be thousands of variables, so only those whose names occur in the
/// text get their turn. They are found by a search behind every opening brace,
/// repeated around each replacement.
class Substitution {
 public:
  using Variables = QMap<QString, QString>;

  struct Limits {
    qsizetype longestText;  ///< in UTF-16 code units; a longer result is cut
    /// When this is exceeded, the substitution stops where it is. Counted are the
    /// characters that are read, and 64 for each search in the table. Many braces
    /// in the text take long if names contain braces, too.
    qint64 work;
  };

  /// No name may be longer than `longestName`.
  Substitution(const Variables& variables, qsizetype longestName, const Limits& limits,
               const QString& text);

  [[nodiscard]] const QString& text() const { return text_; }
  [[nodiscard]] bool wasCut() const { return wasCut_; }
  /// Above the limit if the substitution stopped early.
  [[nodiscard]] qint64 work() const { return work_; }

 private:
  using Variable = Variables::const_iterator;
  struct ByName {
    bool operator()(const Variable& a, const Variable& b) const { return a.key() < b.key(); }
  };

  /// Notes the names behind the opening braces in a part of the text.
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
  /// The names found in the text whose turn is still to come.
  std::set<Variable, ByName> waiting_;
  /// The name whose turn it is.
  std::optional<Variable> latest_;
};

}  // namespace kelmora::script

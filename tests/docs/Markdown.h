#pragma once

#include <QString>
#include <QStringList>

/// A document of the tree, as far as the tests read it.
class Markdown {
 public:
  /// Reads the file; one that cannot be read has no lines.
  explicit Markdown(const QString& path);

  /// The cells of a table, row by row and without its head: the first table
  /// behind the mark "*(checked)*" that stands under a heading. Empty where there
  /// is none.
  [[nodiscard]] QList<QStringList> checkedTable(const QString& heading) const;
  /// The text of the fenced block with that name behind its "```text".
  [[nodiscard]] QString block(const QString& name) const;
  /// Every heading, as the last part of a link to it is written.
  [[nodiscard]] QStringList anchors() const;
  /// Where the links lead that do not leave the tree.
  [[nodiscard]] QStringList localLinks() const;
  [[nodiscard]] QStringList lines() const { return lines_; }

 private:
  QStringList lines_;
};

/// What stands between backticks in a cell, one after another.
[[nodiscard]] QStringList codesIn(const QString& cell);
/// The first of them; empty where there is none.
[[nodiscard]] QString codeIn(const QString& cell);

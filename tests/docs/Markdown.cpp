#include "Markdown.h"

#include <QFile>
#include <QRegularExpression>

namespace {

const QString fence = QStringLiteral("```");

bool isHeading(const QString& line) {
  return line.startsWith('#');
}

/// The cells between the bars of a row. No cell of ours has a bar in it.
QStringList cellsOf(const QString& row) {
  QStringList cells = row.trimmed().split('|');
  cells.removeFirst();
  cells.removeLast();
  for (QString& cell : cells)
    cell = cell.trimmed();
  return cells;
}

}  // namespace

Markdown::Markdown(const QString& path) {
  QFile file(path);
  if (file.open(QIODevice::ReadOnly))
    lines_ = QString::fromUtf8(file.readAll()).split('\n');
}

QList<QStringList> Markdown::checkedTable(const QString& heading) const {
  const auto isPlace = [&](qsizetype at) { return at >= 0 && at < lines_.size(); };
  qsizetype at = lines_.indexOf(heading) + 1;
  if (at == 0)
    return {};
  while (isPlace(at) && !lines_[at].startsWith("*(checked)*")) {
    if (isHeading(lines_[at]))
      return {};
    ++at;
  }
  while (isPlace(at) && !lines_[at].startsWith('|'))
    ++at;
  QList<QStringList> rows;
  for (at += 2; isPlace(at) && lines_[at].startsWith('|'); ++at)
    rows << cellsOf(lines_[at]);
  return rows;
}

QString Markdown::block(const QString& name) const {
  QString text;
  for (qsizetype at = lines_.indexOf(fence + "text " + name) + 1;
       at > 0 && at < lines_.size() && lines_[at] != fence; ++at)
    text += lines_[at] + '\n';
  return text;
}

QStringList Markdown::anchors() const {
  static const QRegularExpression marks(QStringLiteral("[^\\w\\- ]"));
  QStringList anchors;
  for (QString line : lines_)
    if (isHeading(line))
      anchors << line.remove(marks).trimmed().toLower().replace(' ', '-');
  return anchors;
}

QStringList Markdown::localLinks() const {
  static const QRegularExpression link(QStringLiteral("\\]\\(([^)\\s]+)\\)"));
  QStringList targets;
  for (const QString& line : lines_)
    for (auto match = link.globalMatch(line); match.hasNext();)
      if (const QString target = match.next().captured(1); !target.contains("://"))
        targets << target;
  return targets;
}

QStringList codesIn(const QString& cell) {
  static const QRegularExpression code(QStringLiteral("`([^`]*)`"));
  QStringList codes;
  for (auto match = code.globalMatch(cell); match.hasNext();)
    codes << match.next().captured(1);
  return codes;
}

QString codeIn(const QString& cell) {
  return codesIn(cell).value(0);
}

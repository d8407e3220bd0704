#include "Tree.h"

#include <QDirIterator>

#include "support/FileText.h"

QString inTree(const QString& path) {
  return QStringLiteral(KELMORA_TREE) + '/' + path;
}

Markdown page(const QString& name) {
  return Markdown(inTree("docs/reference/" + name));
}

QStringList filesIn(const QString& folder, const QString& names) {
  QStringList paths;
  for (QDirIterator files(inTree(folder), {names}, QDir::Files, QDirIterator::Subdirectories);
       files.hasNext();)
    paths << files.next();
  paths.sort();
  return paths;
}

QString textOf(const QString& path) {
  return QString::fromUtf8(contentsOf(path));
}

#include "layering/IncludeCircles.h"

#include <QRegularExpression>
#include <QSet>

namespace {

/// What each name needs at first hand.
using Graph = QMap<QString, QSet<QString>>;

QSet<QString> reachedFrom(const QString& name, const Graph& graph) {
  QSet<QString> reached;
  QStringList open{name};
  while (!open.isEmpty()) {
    for (const QString& next : graph.value(open.takeLast())) {
      if (reached.contains(next))
        continue;
      reached << next;
      open << next;
    }
  }
  return reached;
}

QList<Circle> circlesOf(const Graph& graph) {
  QMap<QString, QSet<QString>> reached;
  for (const QString& name : graph.keys())
    reached[name] = reachedFrom(name, graph);
  QList<Circle> circles;
  QSet<QString> told;
  for (const QString& name : graph.keys()) {
    if (!reached[name].contains(name) || told.contains(name))
      continue;
    Circle circle;
    for (const QString& other : reached[name])
      if (reached[other].contains(name))
        circle << other;
    circle.sort();
    told.unite(QSet<QString>(circle.begin(), circle.end()));
    circles << circle;
  }
  return circles;
}

bool isHeader(const QString& path) {
  return path.endsWith(QLatin1String(".h"));
}

QString withoutExtension(const QString& path) {
  return path.first(path.lastIndexOf(u'.'));
}

QString unitOf(const QString& path, const SourceTree& tree) {
  QString unit = withoutExtension(path);
  if (isHeader(path) || tree.contains(unit + QLatin1String(".h")))
    return unit;
  for (const QString& include : tree[path].includes) {
    QString other = withoutExtension(include);
    // Formatted code indents everything but the beginnings of definitions.
    const QRegularExpression member(
        QStringLiteral(R"(^\S.*\b%1::~?\w+\(|^%1::~?\w+\()").arg(other.section(u'/', -1)),
        QRegularExpression::MultilineOption);
    if (tree.contains(include) && member.match(tree[path].code).hasMatch())
      return other;
  }
  return unit;
}

}  // namespace

QList<Circle> headerCircles(const SourceTree& tree) {
  Graph graph;
  for (auto file = tree.begin(); file != tree.end(); ++file)
    if (isHeader(file.key()))
      graph[file.key()] = QSet<QString>(file->includes.begin(), file->includes.end());
  return circlesOf(graph);
}

QList<Circle> unitCircles(const SourceTree& tree) {
  Graph graph;
  for (auto file = tree.begin(); file != tree.end(); ++file) {
    const QString unit = unitOf(file.key(), tree);
    for (const QString& include : file->includes)
      if (withoutExtension(include) != unit)
        graph[unit] << withoutExtension(include);
  }
  return circlesOf(graph);
}

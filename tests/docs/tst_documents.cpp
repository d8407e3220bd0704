#include <QFileInfo>
#include <QRegularExpression>

#include "Markdown.h"
#include "Tree.h"
#include "support/ScratchMain.h"

/// What the documents name in the tree: files, tests, categories of the log.
class TestDocuments : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void logCategories();
  void quirksAreHeldByTestsThatExist();
  void everyLinkLeadsSomewhere();
};

void TestDocuments::logCategories() {
  QStringList inPage;
  for (const QStringList& row : Markdown(inTree("docs/reference.md")).checkedTable("## The log"))
    inPage << codeIn(row.at(0));
  QStringList inCode;
  static const QRegularExpression category(
      QStringLiteral("Q_LOGGING_CATEGORY\\(\\w+,\\s*\"([^\"]+)\""));
  for (const QString& path : filesIn("src", "*.cpp"))
    for (auto match = category.globalMatch(textOf(path)); match.hasNext();)
      inCode << match.next().captured(1);
  inCode.sort();
  QCOMPARE(inPage, inCode);
}

void TestDocuments::quirksAreHeldByTestsThatExist() {
  QMap<QString, QString> sources;
  for (const QString& path : filesIn("tests", "tst_*.cpp"))
    sources[QFileInfo(path).completeBaseName()] = path;
  // A file that is in no list is not run.
  const auto isRun = [](const QString& path, const QString& name) {
    const QString list = textOf(QFileInfo(path).path() + "/CMakeLists.txt");
    return list.contains(QRegularExpression("\\b" + name + "\\b"));
  };
  qsizetype count = 0;
  QStringList lost;
  for (const QString& line : page("quirks.md").lines()) {
    const QStringList cells = line.split('|');
    const QStringList test = codeIn(cells.value(2)).split("::");
    if (test.size() != 2)
      continue;
    ++count;
    const QString path = sources.value(test.at(0));
    const QString source = path.isEmpty() ? QString() : textOf(path);
    const QString row = codeIn(cells.value(3));
    if (!source.contains("::" + test.at(1) + "() {") ||
        (!row.isEmpty() && !source.contains('"' + row + '"')) || !isRun(path, test.at(0)))
      lost << line;
  }
  QCOMPARE(lost.join('\n'), QString());
  QVERIFY2(count > 50, qPrintable(QString::number(count)));
}

void TestDocuments::everyLinkLeadsSomewhere() {
  QStringList pages = filesIn("docs", "*.md") + filesIn(".github", "*.md");
  for (const QFileInfo& file : QDir(inTree("")).entryInfoList({"*.md"}, QDir::Files))
    pages << file.filePath();
  QStringList lost;
  for (const QString& path : pages) {
    for (const QString& link : Markdown(path).localLinks()) {
      const QString file = link.section('#', 0, 0);
      const QString target = file.isEmpty() ? path : QFileInfo(path).path() + '/' + file;
      const QString anchor = link.section('#', 1);
      if (!QFileInfo::exists(target) ||
          (!anchor.isEmpty() && !Markdown(target).anchors().contains(anchor)))
        lost << QFileInfo(path).fileName() + ": " + link;
    }
  }
  QCOMPARE(lost.join('\n'), QString());
}

KELMORA_TEST_MAIN(TestDocuments)
#include "tst_documents.moc"

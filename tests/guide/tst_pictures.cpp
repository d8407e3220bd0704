#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

#include "support/FileText.h"
#include "support/ScratchMain.h"

/// The pictures of the pages, and the program that makes them.
class TestPictures : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyPictureOfAPageExistsAndIsMade();
  void everyPictureIsShownSomewhere();
  void theProgramMakesWhatItLists_data();
  void theProgramMakesWhatItLists();
  void theFilmIsSmall();

 private:
  static QString tree(const QString& path) { return QStringLiteral(KELMORA_TREE "/") + path; }
  /// The last parts of the paths of all pictures that the pages show.
  static QStringList shown(QStringList* lost = nullptr);
  /// What the program prints; a failure of it fails the test.
  static QStringList run(const QStringList& arguments);
  static QString film() { return tree("docs/images/play.webp"); }
};

QStringList TestPictures::shown(QStringList* lost) {
  static const QRegularExpression picture(QStringLiteral("!\\[[^\\]]*\\]\\(([^)]+)\\)"));
  QStringList pages{tree("README.md"), tree("docs/guide.md")};
  for (const QFileInfo& page : QDir(tree("docs/guide")).entryInfoList({"*.md"}, QDir::Files))
    pages << page.filePath();
  QStringList names;
  for (const QString& page : pages) {
    const QString text = QString::fromUtf8(contentsOf(page));
    for (auto match = picture.globalMatch(text); match.hasNext();) {
      const QString path = QFileInfo(page).path() + '/' + match.next().captured(1);
      names << QFileInfo(path).fileName();
      if (lost && (!QFileInfo::exists(path) || QFileInfo(path).absolutePath() !=
                                                   QFileInfo(tree("docs/images/x")).absolutePath()))
        *lost << path;
    }
  }
  return names;
}

QStringList TestPictures::run(const QStringList& arguments) {
  QProcess program;
  program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  program.start(KELMORA_PICTURES, arguments);
  if (!program.waitForFinished(60000) || program.exitStatus() != QProcess::NormalExit ||
      program.exitCode() != 0)
    QTest::qFail("the program does not run through", __FILE__, __LINE__);
  return QString::fromUtf8(program.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

void TestPictures::everyPictureOfAPageExistsAndIsMade() {
  QStringList lost;
  const QStringList names = shown(&lost);
  QCOMPARE(lost, QStringList());
  QVERIFY(names.size() > 10);
  const QStringList made = run({"guide", "--list"}) + QStringList{QFileInfo(film()).fileName()};
  for (const QString& name : names)
    QVERIFY2(made.contains(name), qPrintable(name));
  QVERIFY(contentsOf(tree("scripts/pictures")).contains("docs/images/play.webp"));
}

void TestPictures::everyPictureIsShownSomewhere() {
  const QStringList names = shown();
  for (const QString& file : QDir(tree("docs/images")).entryList(QDir::Files))
    QVERIFY2(names.contains(file), qPrintable(file));
}

void TestPictures::theProgramMakesWhatItLists_data() {
  QTest::addColumn<QStringList>("arguments");
  QTest::newRow("the guide's") << QStringList{"guide"};
  QTest::newRow("the dialogs, dark") << QStringList{"dialogs", "--dark"};
  QTest::newRow("the dialogs, in a large font") << QStringList{"dialogs", "--font-percent", "200"};
}

void TestPictures::theProgramMakesWhatItLists() {
  QFETCH(const QStringList, arguments);
  const QTemporaryDir folder;
  QStringList listed = run({arguments.first(), "--list"});
  run(arguments + QStringList{folder.path(), "--port", "0"});
  QStringList made = QDir(folder.path()).entryList(QDir::Files);
  listed.sort();
  made.sort();
  QCOMPARE(made, listed);
  for (const QString& name : made)
    QVERIFY2(contentsOf(folder.filePath(name)).startsWith("\x89PNG"), qPrintable(name));
}

void TestPictures::theFilmIsSmall() {
  const QByteArray bytes = contentsOf(film());
  QVERIFY(bytes.startsWith("RIFF") && bytes.first(16).endsWith("VP8X"));
  QVERIFY(bytes.contains("ANIM"));
  QVERIFY2(bytes.size() < 1000000, qPrintable(QString::number(bytes.size())));
}

KELMORA_TEST_MAIN(TestPictures)
#include "tst_pictures.moc"

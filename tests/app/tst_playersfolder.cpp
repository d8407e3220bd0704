#include <QDir>
#include <QFile>
#include <QTest>

#include "app/PlayersFolder.h"
#include "support/ScratchMain.h"

using namespace kelmora::app;

class TestPlayersFolder : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void aUsableFolderIsNoTrouble();
  void aFolderThatCannotBeMadeEndsTheStart();
  void aFolderThatWasNotEnteredEndsTheStart();
  void aFullFolderIsToldAndLetsOnePlay();
  void aFolderOfThePlayersChoiceIsNotAskedAbout();
};

void TestPlayersFolder::aUsableFolderIsNoTrouble() {
  QVERIFY(!troubleWith(QDir::currentPath()));
}

void TestPlayersFolder::aFolderThatCannotBeMadeEndsTheStart() {
  QFile inTheWay(QStringLiteral("in the way"));
  QVERIFY(inTheWay.open(QIODevice::WriteOnly));
  const QString folder = QDir::current().filePath(QStringLiteral("in the way/kelmora"));
  const auto trouble = troubleWith(folder);
  QVERIFY(trouble);
  QVERIFY(!trouble->canPlay);
  QVERIFY(trouble->text.contains(QDir::toNativeSeparators(folder)));
}

void TestPlayersFolder::aFolderThatWasNotEnteredEndsTheStart() {
  QVERIFY(QDir().mkpath(QStringLiteral("mine")));
  const auto trouble = troubleWith(QDir::current().filePath(QStringLiteral("mine")));
  QVERIFY(trouble);
  QVERIFY(!trouble->canPlay);
}

void TestPlayersFolder::aFullFolderIsToldAndLetsOnePlay() {
  const QString full = QStringLiteral("/proc");  // has no space, whoever asks
  if (!QDir(full).exists())
    QSKIP("no file system without space is known here");
  const QString before = QDir::currentPath();
  QVERIFY(QDir::setCurrent(full));
  const auto trouble = troubleWith(full);
  QVERIFY(QDir::setCurrent(before));
  QVERIFY(trouble);
  QVERIFY(trouble->canPlay);
  QVERIFY(trouble->text.contains(full));
}

void TestPlayersFolder::aFolderOfThePlayersChoiceIsNotAskedAbout() {
  QVERIFY(!qEnvironmentVariableIsSet("KELMORA_FOLDER"));
  QVERIFY(checkPlayersFolder());
}

KELMORA_GUI_TEST_MAIN(TestPlayersFolder)
#include "tst_playersfolder.moc"

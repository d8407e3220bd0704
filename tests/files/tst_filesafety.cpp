// That no file is lost to missing permissions, a full disk, a kill, or something in
// its place that is no file. Most of these tests run the code in a child process,
// which can give up its permissions or be killed.

#include <QFileInfo>
#include <QRandomGenerator>
#include <algorithm>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

#include "files/Files.h"
#include "support/FileText.h"
#include "support/InChild.h"
#include "support/OwnFolder.h"
#include "support/OwnFolderTest.h"
#include "support/ScratchMain.h"
#include "support/SizeLimit.h"

using namespace kelmora;
using namespace kelmora::files;

using namespace Qt::StringLiterals;

namespace {

const QString path = u"./table.txt"_s;

}  // namespace

class TestFileSafety : public OwnFolderTest {
  Q_OBJECT

 private Q_SLOTS:
  void aPipeIsLeftAlone();
  void theNullDeviceIsAnEmptyFile_data();
  void theNullDeviceIsAnEmptyFile();
  void aDeviceBehindALinkIsLeftAlone_data();
  void aDeviceBehindALinkIsLeftAlone();
  void aFileWithoutReadPermissionCannotBeRead();
  void aMissingFileOfALockedFolderCannotBeRead();
  void aReadOnlyFileIsNotReplaced();
  void aFileInALockedFolderIsWrittenInPlace();
  void anothersFileInASharedFolderIsWrittenInPlace();
  void aFileWithoutReadPermissionIsMovedBeside();
  void anOrdinaryUserKeepsACopyToo();
  void nothingIsKeptInALockedFolder();
  void aCopyThatDoesNotFitLeavesNoPart();
  void aSizeLimitLeavesTheOldFile();
  void aKillLeavesTheOldFileOrTheNew();
#ifdef Q_OS_LINUX
  void aReadErrorIsNoEnd();
  void aFullDiskLeavesTheOldFile();
  void aFileMountedByItselfIsWrittenInPlace();
#endif
};

void TestFileSafety::aPipeIsLeftAlone() {
  QCOMPARE(mkfifo("table.txt", 0600), 0);
  // To open it would wait for ever, since nobody opens its other end.
  QCOMPARE(files::kindOf(path), files::Kind::Other);
  QVERIFY(!files::read(path));
  QVERIFY(!files::readOrCreate(path));
  QVERIFY(!files::replace(path, "x"));
  QVERIFY(!files::keepBeside(path));
  QVERIFY(!files::openAndEmpty(path));
  struct stat status = {};
  QCOMPARE(lstat("table.txt", &status), 0);
  QVERIFY(S_ISFIFO(status.st_mode));
}

void TestFileSafety::theNullDeviceIsAnEmptyFile_data() {
  QTest::addColumn<QString>("target");
  QTest::newRow("behind a link") << u"/dev/null"_s;
  QTest::newRow("behind a link to a link") << u"second"_s;
}

void TestFileSafety::theNullDeviceIsAnEmptyFile() {
  QFETCH(QString, target);
  QVERIFY(QFile::link(u"/dev/null"_s, u"second"_s));
  QVERIFY(QFile::link(target, path));
  const auto read = files::readOrCreate(path);
  QVERIFY(read);
  QVERIFY(read->whole);
  QCOMPARE(read->bytes, QByteArray());
  QVERIFY(!files::replace(path, "x"));
  QVERIFY(!files::openAndEmpty(path));
  QVERIFY(QFileInfo(path).isSymLink());
  QCOMPARE(QFileInfo(path).canonicalFilePath(), u"/dev/null"_s);
}

void TestFileSafety::aDeviceBehindALinkIsLeftAlone_data() {
  QTest::addColumn<QString>("device");
  for (const char* name : {"/dev/full", "/dev/zero"})
    if (QFileInfo::exists(QString::fromLatin1(name)))
      QTest::newRow(name) << QString::fromLatin1(name);
}

void TestFileSafety::aDeviceBehindALinkIsLeftAlone() {
  QFETCH(QString, device);
  // As an ordinary user, so that an error in the code cannot remove the computer's own
  // device.
  const int result =
      asOrdinaryUser([&] { return !files::readOrCreate(device) && !files::replace(device, "x"); });
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
  QVERIFY(QFile::link(device, path));
  QVERIFY(!files::readOrCreate(path));
  QVERIFY(!files::openAndEmpty(path));
  QVERIFY(QFileInfo(path).isSymLink());
  struct stat status = {};
  QCOMPARE(stat("table.txt", &status), 0);
  QVERIFY(S_ISCHR(status.st_mode));
}

void TestFileSafety::aFileWithoutReadPermissionCannotBeRead() {
  QVERIFY(put(path, "secret"));
  QCOMPARE(chmod("table.txt", 0), 0);
  QCOMPARE(chmod(".", 0777), 0);
  const int result =
      asOrdinaryUser([] { return !(files::read(path) || files::readOrCreate(path)); });
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
}

void TestFileSafety::aMissingFileOfALockedFolderCannotBeRead() {
  QCOMPARE(chmod(".", 0555), 0);
  const int result = asOrdinaryUser([] {
    return !(files::readOrCreate(path) || files::replace(path, "x") || files::openAndEmpty(path));
  });
  QCOMPARE(chmod(".", 0755), 0);
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
  QCOMPARE(namesHere(), QStringList());
}

void TestFileSafety::aReadOnlyFileIsNotReplaced() {
  QVERIFY(put(path, "old"));
  QCOMPARE(chmod("table.txt", 0444), 0);
  QCOMPARE(chmod(".", 0777), 0);
  const int result =
      asOrdinaryUser([] { return !(files::replace(path, "new") || files::openAndEmpty(path)); });
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
  QCOMPARE(contentsOf(path), "old");
  QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
}

void TestFileSafety::aFileInALockedFolderIsWrittenInPlace() {
  QVERIFY(put(path, "old and longer"));
  QCOMPARE(chmod("table.txt", 0666), 0);
  QCOMPARE(chmod(".", 0555), 0);
  const int result = asOrdinaryUser([] { return files::replace(path, "new"); });
  QCOMPARE(chmod(".", 0755), 0);
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
  QCOMPARE(contentsOf(path), "new");
}

void TestFileSafety::anothersFileInASharedFolderIsWrittenInPlace() {
  if (geteuid() != 0)
    QSKIP("only the administrator can make a file that belongs to another user");
  QVERIFY(put(path, "old and longer"));
  QCOMPARE(chmod("table.txt", 0666), 0);
  QCOMPARE(chmod(".", 01777), 0);
  const int result = asOrdinaryUser([] { return files::replace(path, "new"); });
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
  QCOMPARE(contentsOf(path), "new");
  QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
}

void TestFileSafety::aFileWithoutReadPermissionIsMovedBeside() {
  QVERIFY(put(path, "secret"));
  QCOMPARE(chmod("table.txt", 0200), 0);
  QCOMPARE(chmod(".", 0777), 0);
  const int result = asOrdinaryUser([] { return files::keepBeside(path); });
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
  QCOMPARE(namesHere(), QStringList{u"table.txt.bak"_s});
}

void TestFileSafety::anOrdinaryUserKeepsACopyToo() {
  QVERIFY(put(path, "old"));
  QCOMPARE(chmod("table.txt", 0444), 0);
  QCOMPARE(chmod(".", 0777), 0);
  const int result = asOrdinaryUser([] { return files::keepBeside(path); });
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
  QCOMPARE(contentsOf(path + u".bak"_s), "old");
  QCOMPARE(namesHere().size(), 2);
}

void TestFileSafety::nothingIsKeptInALockedFolder() {
  QVERIFY(put(path, "old"));
  QCOMPARE(chmod("table.txt", 0666), 0);
  QCOMPARE(chmod(".", 0555), 0);
  const int result =
      asOrdinaryUser([] { return !(files::keepBeside(path) || files::moveBeside(path)); });
  QCOMPARE(chmod(".", 0755), 0);
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
  QCOMPARE(contentsOf(path), "old");
  QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
}

void TestFileSafety::aCopyThatDoesNotFitLeavesNoPart() {
  QVERIFY(put(path, QByteArray(100'000, 'a')));
  const int result = inChild([] {
    const SizeLimit limit(1000);
    return files::keepBeside(path) ? notAsWished : asWished;
  });
  QCOMPARE(result, asWished);
  QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
  QCOMPARE(contentsOf(path).size(), 100'000);
}

void TestFileSafety::aSizeLimitLeavesTheOldFile() {
  QVERIFY(put(path, "old"));
  for (const qsizetype size : {6'000, 20'000, 2'000'000}) {
    const int result = inChild([size] {
      const rlimit limit{4096, 4096};
      if (setrlimit(RLIMIT_FSIZE, &limit) != 0 || std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR)
        return cannotTry;
      return files::replace(path, QByteArray(size, 'x')) ? notAsWished : asWished;
    });
    QCOMPARE(result, asWished);
    QCOMPARE(contentsOf(path), "old");
    QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
  }
}

void TestFileSafety::aKillLeavesTheOldFileOrTheNew() {
  const auto version = [](int number) {
    return (QByteArray::number(number) + '\n').repeated(200'000);
  };
  const auto numberOf = [](const QByteArray& bytes) {
    return bytes.first(std::max(bytes.indexOf('\n'), qsizetype{0})).toInt();
  };
  int number = 1;
  QVERIFY(put(path, version(number)));
  QRandomGenerator random(42);
  for (int kill = 0; kill < 50; ++kill) {
    const pid_t child = startChild([&] {
      for (int next = number + 1; files::replace(path, version(next)); ++next) {
      }
      return notAsWished;
    });
    QVERIFY(child > 0);
    QTest::qSleep(static_cast<int>(random.bounded(1, 30)));
    if (kill == 0)
      QTRY_VERIFY_WITH_TIMEOUT(numberOf(contentsOf(path)) > 3, 30000);
    QCOMPARE(::kill(child, SIGKILL), 0);
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY2(WIFSIGNALED(status), "a save failed before the kill");

    const QByteArray bytes = contentsOf(path);
    QVERIFY(numberOf(bytes) >= number);
    number = numberOf(bytes);
    QVERIFY2(bytes == version(number), "the file is neither the old one nor the new");
  }
}

#ifdef Q_OS_LINUX

void TestFileSafety::aReadErrorIsNoEnd() {
  // This file can be opened, but not read: no process has memory at address 0.
  const auto read = files::readOrCreate(u"/proc/self/mem"_s);
  QVERIFY(read);
  QVERIFY(!read->whole);
  QCOMPARE(read->bytes, QByteArray());
}

void TestFileSafety::aFullDiskLeavesTheOldFile() {
  QVERIFY(QDir().mkdir(u"disk"_s));
  const int result = inChild([] {
    if (!leaveCommonMounts() || mount("none", "disk", "tmpfs", 0, "size=64k") != 0 ||
        chdir("disk") != 0)
      return cannotTry;
    const QByteArray old(20'000, 'o');
    if (!files::replace(path, old))
      return notAsWished;
    for (const qsizetype size : {60'000, 200'000, 5'000'000})
      if (files::replace(path, QByteArray(size, 'n')) || contentsOf(path) != old ||
          namesHere().size() != 1)
        return notAsWished;
    // As soon as a file fits on the disk again, it is saved.
    return files::replace(path, "new") && contentsOf(path) == "new" ? asWished : notAsWished;
  });
  if (result == cannotTry)
    QSKIP("this user may not mount a small disk");
  QCOMPARE(result, asWished);
}

void TestFileSafety::aFileMountedByItselfIsWrittenInPlace() {
  QVERIFY(put(u"elsewhere.txt"_s, "old and longer"));
  QVERIFY(put(path, "hidden"));
  const int result = inChild([] {
    if (!leaveCommonMounts() || mount("elsewhere.txt", "table.txt", nullptr, MS_BIND, nullptr) != 0)
      return cannotTry;
    return files::replace(path, "new") ? asWished : notAsWished;
  });
  if (result == cannotTry)
    QSKIP("this user may not mount a file");
  QCOMPARE(result, asWished);
  QCOMPARE(contentsOf(u"elsewhere.txt"_s), "new");
  QCOMPARE(contentsOf(path), "hidden");
  QCOMPARE(namesHere(), (QStringList{u"elsewhere.txt"_s, u"table.txt"_s}));
}

#endif

KELMORA_TEST_MAIN(TestFileSafety)
#include "tst_filesafety.moc"

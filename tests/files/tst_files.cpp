#include <QFileInfo>
#include <functional>

#include "files/Files.h"
#include "support/FileText.h"
#include "support/LogLines.h"
#include "support/OwnFolder.h"
#include "support/OwnFolderTest.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::files;

using namespace Qt::StringLiterals;

namespace {

const QString path = u"./table.txt"_s;

}  // namespace

class TestFiles : public OwnFolderTest {
  Q_OBJECT

 private Q_SLOTS:
  void thePathsKindIsTold();
  void aFileIsReadByteForByte();
  void readingAloneCreatesNothing();
  void aMissingFileIsCreatedEmpty();
  void aMissingFileOfAMissingFolderCannotBeRead();
  void aFolderInTheFilesPlaceIsNeitherReadNorReplaced();
  void aFileThatIsTooLongIsReadInPart_data();
  void aFileThatIsTooLongIsReadInPart();
  void noMoreIsReadThanAsked_data();
  void noMoreIsReadThanAsked();
  void aFileIsReplacedByteForByte();
  void aReplacedFileKeepsItsPermissions_data();
  void aReplacedFileKeepsItsPermissions();
  void aReplacedFileIsTheOwnersAloneWhereThatIsAsked_data();
  void aReplacedFileIsTheOwnersAloneWhereThatIsAsked();
  void aLinkStaysALink_data();
  void aLinkStaysALink();
  void aCopyIsKeptUnderTheFirstFreeName();
  void aKeptCopyHasThePermissions_data();
  void aKeptCopyHasThePermissions();
  void theLongestFileIsCopied();
  void aFileTooLongToBeCopiedIsMoved();
  void whatALinkLeadsToIsCopied();
  void whatIsNoFileIsNotKept();
  void aFileIsMovedToTheFirstFreeName();
  void aFileIsEmptied();
  void whatFailsIsLogged_data();
  void whatFailsIsLogged();
  void whatIsKeptIsLogged();
};

void TestFiles::thePathsKindIsTold() {
  QVERIFY(put(u"file"_s, "x"));
  QVERIFY(QDir().mkdir(u"folder"_s));
  for (const char* target : {"file", "folder", "nothing"})
    QVERIFY(QFile::link(QString::fromLatin1(target), u"link to "_s + QLatin1String(target)));
  QCOMPARE(files::kindOf(u"nothing"_s), files::Kind::Missing);
  QCOMPARE(files::kindOf(u"file"_s), files::Kind::Ordinary);
  QCOMPARE(files::kindOf(u"folder"_s), files::Kind::Other);
  QCOMPARE(files::kindOf(u"link to nothing"_s), files::Kind::Missing);
  QCOMPARE(files::kindOf(u"link to file"_s), files::Kind::Ordinary);
  QCOMPARE(files::kindOf(u"link to folder"_s), files::Kind::Other);
}

void TestFiles::aFileIsReadByteForByte() {
  const QByteArray bytes = "a\r\n\0\xE9\xFF\n\n x"_ba;
  QVERIFY(put(path, bytes));
  for (const auto& read : {files::read(path), files::readOrCreate(path)}) {
    QVERIFY(read);
    QVERIFY(read->whole);
    QCOMPARE(read->bytes, bytes);
    QCOMPARE(read->wholeLines(), bytes);
  }
  QCOMPARE(contentsOf(path), bytes);
}

void TestFiles::readingAloneCreatesNothing() {
  QVERIFY(!files::read(path));
  QVERIFY(QFile::link(u"nothing"_s, u"link"_s));
  QVERIFY(!files::read(u"link"_s));
  QCOMPARE(namesHere(), QStringList{u"link"_s});
}

void TestFiles::aMissingFileIsCreatedEmpty() {
  const auto read = files::readOrCreate(path);
  QVERIFY(read);
  QVERIFY(read->whole);
  QCOMPARE(read->bytes, QByteArray());
  QCOMPARE(contentsOf(path), QByteArray(""));
}

void TestFiles::aMissingFileOfAMissingFolderCannotBeRead() {
  QVERIFY(!files::readOrCreate(u"./nowhere/table.txt"_s));
  QVERIFY(!files::replace(u"./nowhere/table.txt"_s, "x"));
  QVERIFY(!files::openAndEmpty(u"./nowhere/table.txt"_s));
  QCOMPARE(namesHere(), QStringList());
}

void TestFiles::aFolderInTheFilesPlaceIsNeitherReadNorReplaced() {
  QVERIFY(QDir().mkdir(path));
  QVERIFY(!files::read(path));
  QVERIFY(!files::readOrCreate(path));
  QVERIFY(!files::replace(path, "x"));
  QVERIFY(!files::openAndEmpty(path));
  QVERIFY(QFileInfo(path).isDir());
  QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
}

void TestFiles::aFileThatIsTooLongIsReadInPart_data() {
  QTest::addColumn<qint64>("size");
  QTest::addColumn<bool>("whole");
  QTest::addColumn<qsizetype>("length");
  constexpr qint64 longest = qint64{128} * 1024 * 1024;
  QTest::newRow("a file as long as may be is read whole") << longest << true << qsizetype{longest};
  QTest::newRow("of a longer one the whole lines") << longest + 1 << false << qsizetype{4};
}

void TestFiles::aFileThatIsTooLongIsReadInPart() {
  QFETCH(qint64, size);
  QFETCH(bool, whole);
  QFETCH(qsizetype, length);
  QVERIFY(put(path, "a\nb\nc"));
  // The rest of the file is NUL bytes, for which the disk needs no room.
  QVERIFY(QFile::resize(path, size));
  const auto read = files::readOrCreate(path);
  QVERIFY(read);
  QCOMPARE(read->whole, whole);
  QCOMPARE(read->wholeLines().size(), length);
  QVERIFY(read->wholeLines().startsWith("a\nb\n"));
}

void TestFiles::noMoreIsReadThanAsked_data() {
  QTest::addColumn<qint64>("most");
  QTest::addColumn<QByteArray>("bytes");
  QTest::addColumn<QByteArray>("lines");
  QTest::addColumn<bool>("whole");
  QTest::newRow("a byte more than there is") << qint64{6} << "a\nb\nc"_ba
                                             << "a\nb\nc"_ba << true;
  QTest::newRow("as much as there is") << qint64{5} << "a\nb\nc"_ba
                                       << "a\nb\nc"_ba << true;
  QTest::newRow("up to the end of a line") << qint64{4} << "a\nb\n"_ba
                                           << "a\nb\n"_ba << false;
  QTest::newRow("within a line") << qint64{3} << "a\nb"_ba
                                 << "a\n"_ba << false;
  QTest::newRow("within the first line") << qint64{1} << "a"_ba
                                         << ""_ba << false;
}

void TestFiles::noMoreIsReadThanAsked() {
  QFETCH(qint64, most);
  QFETCH(QByteArray, bytes);
  QFETCH(QByteArray, lines);
  QFETCH(bool, whole);
  QVERIFY(put(path, "a\nb\nc"));
  for (const auto& read : {files::read(path, most), files::readOrCreate(path, most)}) {
    QVERIFY(read);
    QCOMPARE(read->bytes, bytes);
    QCOMPARE(read->wholeLines(), lines);
    QCOMPARE(read->whole, whole);
  }
}

void TestFiles::aFileIsReplacedByteForByte() {
  for (const QByteArray& bytes : {"long \0\xE9\r\n text"_ba, "short"_ba, ""_ba, "again"_ba}) {
    QVERIFY(files::replace(path, bytes));
    QCOMPARE(contentsOf(path), bytes);
    QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
  }
}

void TestFiles::aReplacedFileKeepsItsPermissions_data() {
  QTest::addColumn<QFile::Permissions>("permissions");
  using P = QFileDevice::Permission;
  const QFile::Permissions owner = P::ReadOwner | P::WriteOwner | P::ReadUser | P::WriteUser;
  QTest::newRow("the owner alone") << owner;
  QTest::newRow("the group reads") << (owner | P::ReadGroup);
  QTest::newRow("all write") << (owner | P::ReadGroup | P::WriteGroup | P::ReadOther |
                                 P::WriteOther);
}

void TestFiles::aReplacedFileKeepsItsPermissions() {
  QFETCH(QFile::Permissions, permissions);
  QVERIFY(put(path, "old"));
  QVERIFY(QFile::setPermissions(path, permissions));
  QVERIFY(files::replace(path, "new"));
  QCOMPARE(contentsOf(path), "new");
  QCOMPARE(QFile::permissions(path), permissions);
}

void TestFiles::aReplacedFileIsTheOwnersAloneWhereThatIsAsked_data() {
  QTest::addColumn<bool>("exists");
  QTest::newRow("a new file") << false;
  QTest::newRow("a file that everybody could read") << true;
}

void TestFiles::aReplacedFileIsTheOwnersAloneWhereThatIsAsked() {
  QFETCH(const bool, exists);
  using P = QFileDevice::Permission;
  const QFile::Permissions owner = P::ReadOwner | P::WriteOwner | P::ReadUser | P::WriteUser;
  if (exists) {
    QVERIFY(put(path, "old"));
    QVERIFY(QFile::setPermissions(path, owner | P::ReadGroup | P::ReadOther));
  }
  QVERIFY(files::replace(path, "new", files::Access::OwnerOnly));
  QCOMPARE(contentsOf(path), "new");
  QCOMPARE(QFile::permissions(path), owner);
}

void TestFiles::aLinkStaysALink_data() {
  QTest::addColumn<QString>("target");
  QTest::addColumn<bool>("exists");
  QTest::newRow("to a file beside it") << u"kept.txt"_s << true;
  QTest::newRow("to a file in another folder") << u"folder/kept.txt"_s << true;
  QTest::newRow("to a link to a file") << u"second"_s << true;
  QTest::newRow("to a file that is missing") << u"folder/missing.txt"_s << false;
}

void TestFiles::aLinkStaysALink() {
  QFETCH(QString, target);
  QFETCH(bool, exists);
  QVERIFY(QDir().mkdir(u"folder"_s));
  QVERIFY(QFile::link(u"folder/kept.txt"_s, u"second"_s));
  if (exists)
    QVERIFY(put(target, "old"));
  QVERIFY(QFile::link(target, path));

  const auto read = files::readOrCreate(path);
  QVERIFY(read);
  QCOMPARE(read->bytes, exists ? "old"_ba : ""_ba);
  QVERIFY(files::replace(path, "new"));
  QVERIFY(QFileInfo(path).isSymLink());
  QCOMPARE(contentsOf(target), "new");
}

void TestFiles::aCopyIsKeptUnderTheFirstFreeName() {
  const QByteArray bytes = "a\r\n\0\xE9 x"_ba;
  QVERIFY(put(path, bytes));
  QVERIFY(files::keepBeside(path));
  QCOMPARE(namesHere(), (QStringList{u"table.txt"_s, u"table.txt.bak"_s}));
  QCOMPARE(contentsOf(path), bytes);
  QCOMPARE(contentsOf(path + u".bak"_s), bytes);

  QVERIFY(put(path, "second"));
  QVERIFY(files::keepBeside(path));
  QCOMPARE(contentsOf(path + u".bak"_s), bytes);
  QCOMPARE(contentsOf(path + u".bak2"_s), "second");

  // A name may also be taken by a folder, or by a link that leads nowhere.
  QVERIFY(QDir().mkdir(path + u".bak3"_s));
  QVERIFY(QFile::link(u"./nothing"_s, path + u".bak4"_s));
  QVERIFY(put(path, "third"));
  QVERIFY(files::keepBeside(path));
  QCOMPARE(contentsOf(path + u".bak5"_s), "third");
  QCOMPARE(namesHere().size(), 6);
}

void TestFiles::aKeptCopyHasThePermissions_data() {
  QTest::addColumn<QFile::Permissions>("permissions");
  QTest::addColumn<files::Access>("access");
  QTest::addColumn<QFile::Permissions>("kept");
  using P = QFileDevice::Permission;
  const QFile::Permissions owner = P::ReadOwner | P::WriteOwner | P::ReadUser | P::WriteUser;
  const QFile::Permissions wide = owner | P::ReadGroup | P::WriteGroup | P::ReadOther;
  QTest::newRow("of the file") << wide << files::Access::AsBefore << wide;
  QTest::newRow("of the file that only its owner reads")
      << owner << files::Access::AsBefore << owner;
  QTest::newRow("of its owner alone where that is asked")
      << wide << files::Access::OwnerOnly << owner;
}

void TestFiles::aKeptCopyHasThePermissions() {
  QFETCH(QFile::Permissions, permissions);
  QFETCH(files::Access, access);
  QFETCH(QFile::Permissions, kept);
  QVERIFY(put(path, "old"));
  QVERIFY(QFile::setPermissions(path, permissions));
  QVERIFY(files::keepBeside(path, access));
  QCOMPARE(QFile::permissions(path + u".bak"_s), kept);
  QCOMPARE(QFile::permissions(path), permissions);
}

void TestFiles::theLongestFileIsCopied() {
  QVERIFY(put(path, "a\nb\nc"));
  QVERIFY(QFile::resize(path, files::largestFile));
  QVERIFY(files::keepBeside(path));
  QCOMPARE(QFileInfo(path).size(), files::largestFile);
  QCOMPARE(QFileInfo(path + u".bak"_s).size(), files::largestFile);
}

void TestFiles::aFileTooLongToBeCopiedIsMoved() {
  QVERIFY(put(path, "a\nb\nc"));
  QVERIFY(QFile::resize(path, files::largestFile + 1));
  QVERIFY(files::keepBeside(path));
  QCOMPARE(namesHere(), QStringList{u"table.txt.bak"_s});
  QCOMPARE(QFileInfo(path + u".bak"_s).size(), files::largestFile + 1);
}

void TestFiles::whatALinkLeadsToIsCopied() {
  QVERIFY(put(u"kept.txt"_s, "old"));
  QVERIFY(QFile::link(u"kept.txt"_s, path));
  QVERIFY(files::keepBeside(path));
  QVERIFY(QFileInfo(path).isSymLink());
  QVERIFY(!QFileInfo(path + u".bak"_s).isSymLink());
  QVERIFY(files::replace(path, "new"));
  QCOMPARE(contentsOf(path + u".bak"_s), "old");
}

void TestFiles::whatIsNoFileIsNotKept() {
  QVERIFY(files::keepBeside(path));
  QVERIFY(!files::moveBeside(path));
  QCOMPARE(namesHere(), QStringList());
  QVERIFY(QDir().mkdir(path));
  QVERIFY(!files::keepBeside(path));
  QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
}

void TestFiles::aFileIsMovedToTheFirstFreeName() {
  QVERIFY(put(path, "first"));
  QVERIFY(files::moveBeside(path));
  QCOMPARE(namesHere(), QStringList{u"table.txt.bak"_s});
  QVERIFY(put(path, "second"));
  QVERIFY(files::moveBeside(path));
  QCOMPARE(contentsOf(path + u".bak"_s), "first");
  QCOMPARE(contentsOf(path + u".bak2"_s), "second");
  QCOMPARE(namesHere().size(), 2);
}

void TestFiles::aFileIsEmptied() {
  QVERIFY(put(path, "old"));
  QVERIFY(files::openAndEmpty(path));
  QCOMPARE(contentsOf(path), QByteArray(""));
  QVERIFY(files::openAndEmpty(u"./new.txt"_s));
  QCOMPARE(namesHere(), (QStringList{u"new.txt"_s, u"table.txt"_s}));
}

void TestFiles::whatFailsIsLogged_data() {
  using Act = std::function<bool(QString)>;
  QTest::addColumn<QString>("place");
  QTest::addColumn<Act>("act");
  QTest::addColumn<QString>("beginning");
  const QString missing = u"nowhere/table.txt"_s;
  const QString folder = u"folder"_s;
  const QString file = u"file"_s;
  const auto row = [](const char* name, const QString& place, const Act& act,
                      const QString& beginning) {
    QTest::newRow(name) << place << act << beginning + u' ' + place + u": "_s;
  };
  const Act read = [](const QString& place) { return files::read(place).has_value(); };
  const Act create = [](const QString& place) { return files::readOrCreate(place).has_value(); };
  const Act readOneByte = [](const QString& place) {
    return files::read(place, 1).value_or(files::Contents{.bytes = {}, .whole = false}).whole;
  };
  const Act replace = [](const QString& place) { return files::replace(place, "x"); };
  const Act keep = [](const QString& place) { return files::keepBeside(place); };
  row("reading a file that is missing", missing, read, u"cannot read"_s);
  row("creating a file in a folder that is missing", missing, create, u"cannot read or create"_s);
  row("replacing a file of a folder that is missing", missing, replace, u"cannot replace"_s);
  row("emptying a file of a folder that is missing", missing, &files::openAndEmpty,
      u"cannot write to"_s);
  row("moving a file that is missing", missing, &files::moveBeside, u"cannot move aside"_s);
  row("reading a folder", folder, read, u"left alone:"_s);
  row("replacing a folder", folder, replace, u"left alone:"_s);
  row("keeping a folder", folder, keep, u"cannot keep"_s);
  row("reading a file that is too long", file, readOneByte, u"not read to its end:"_s);
}

void TestFiles::whatFailsIsLogged() {
  using Act = std::function<bool(QString)>;
  QFETCH(QString, place);
  QFETCH(Act, act);
  QFETCH(QString, beginning);
  QVERIFY(QDir().mkdir(u"folder"_s));
  QVERIFY(put(u"file"_s, "secret"));
  const LogLines log("kelmora.files");
  QVERIFY(!act(place));
  QCOMPARE(log.lines().size(), 1);
  QVERIFY2(log.lines().first().startsWith(beginning), qPrintable(log.lines().first()));
  QVERIFY2(log.lines().first().size() > beginning.size(), "no reason is told");
  QVERIFY(!log.lines().first().contains(u"secret"_s));
}

void TestFiles::whatIsKeptIsLogged() {
  const LogLines log("kelmora.files");
  QVERIFY(put(path, "x"));
  QVERIFY(files::keepBeside(path));
  QVERIFY(files::moveBeside(path));
  QCOMPARE(log.lines(), (QStringList{u"./table.txt was copied to ./table.txt.bak"_s,
                                     u"./table.txt was moved to ./table.txt.bak2"_s}));
}

KELMORA_TEST_MAIN(TestFiles)
#include "tst_files.moc"

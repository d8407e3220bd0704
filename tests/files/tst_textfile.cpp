#include <QFileInfo>
#include <memory>

#include "files/TextFile.h"
#include "support/OwnFolder.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::files;

using namespace Qt::StringLiterals;

namespace {

const QString path = u"./table.txt"_s;

}  // namespace

class TestTextFile : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void aFileIsReadByteForByte();
  void aMissingFileIsCreatedEmpty();
  void aMissingFileOfAMissingFolderCannotBeRead();
  void aFolderInTheFilesPlaceIsNeitherReadNorReplaced();
  void aFileThatIsTooLongIsReadInPart_data();
  void aFileThatIsTooLongIsReadInPart();
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

 private:
  std::unique_ptr<OwnFolder> folder_;
};

void TestTextFile::init() {
  folder_ = std::make_unique<OwnFolder>();
  QVERIFY(folder_->isValid());
}

void TestTextFile::cleanup() {
  folder_.reset();
}

void TestTextFile::aFileIsReadByteForByte() {
  const QByteArray bytes = "a\r\n\0\xE9\xFF\n\n x"_ba;
  QVERIFY(put(path, bytes));
  const auto read = files::read(path);
  QVERIFY(read);
  QVERIFY(read->whole);
  QCOMPARE(read->bytes, bytes);
  QCOMPARE(contentsOf(path), bytes);
}

void TestTextFile::aMissingFileIsCreatedEmpty() {
  const auto read = files::read(path);
  QVERIFY(read);
  QVERIFY(read->whole);
  QCOMPARE(read->bytes, QByteArray());
  QCOMPARE(contentsOf(path), QByteArray(""));
  QVERIFY(!contentsOf(path).isNull());
}

void TestTextFile::aMissingFileOfAMissingFolderCannotBeRead() {
  QVERIFY(!files::read(u"./nowhere/table.txt"_s));
  QVERIFY(!files::replace(u"./nowhere/table.txt"_s, "x"));
  QVERIFY(!files::openAndEmpty(u"./nowhere/table.txt"_s));
  QCOMPARE(namesHere(), QStringList());
}

void TestTextFile::aFolderInTheFilesPlaceIsNeitherReadNorReplaced() {
  QVERIFY(QDir().mkdir(path));
  QVERIFY(!files::read(path));
  QVERIFY(!files::replace(path, "x"));
  QVERIFY(!files::openAndEmpty(path));
  QVERIFY(QFileInfo(path).isDir());
  QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
}

void TestTextFile::aFileThatIsTooLongIsReadInPart_data() {
  QTest::addColumn<qint64>("size");
  QTest::addColumn<bool>("whole");
  QTest::addColumn<qsizetype>("length");
  constexpr qint64 longest = qint64{128} * 1024 * 1024;
  QTest::newRow("a file as long as may be is read whole") << longest << true << qsizetype{longest};
  QTest::newRow("of a longer one the whole lines") << longest + 1 << false << qsizetype{4};
}

void TestTextFile::aFileThatIsTooLongIsReadInPart() {
  QFETCH(qint64, size);
  QFETCH(bool, whole);
  QFETCH(qsizetype, length);
  QVERIFY(put(path, "a\nb\nc"));
  QVERIFY(QFile::resize(path, size));  // NULs that take no room on the disk
  const auto read = files::read(path);
  QVERIFY(read);
  QCOMPARE(read->whole, whole);
  QCOMPARE(read->bytes.size(), length);
  QVERIFY(read->bytes.startsWith("a\nb\n"));
}

void TestTextFile::aFileIsReplacedByteForByte() {
  for (const QByteArray& bytes : {"long \0\xE9\r\n text"_ba, "short"_ba, ""_ba, "again"_ba}) {
    QVERIFY(files::replace(path, bytes));
    QCOMPARE(contentsOf(path), bytes);
    QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
  }
}

void TestTextFile::aReplacedFileKeepsItsPermissions_data() {
  QTest::addColumn<QFile::Permissions>("permissions");
  using P = QFileDevice::Permission;
  const QFile::Permissions owner = P::ReadOwner | P::WriteOwner | P::ReadUser | P::WriteUser;
  QTest::newRow("the owner alone") << owner;
  QTest::newRow("the group reads") << (owner | P::ReadGroup);
  QTest::newRow("all write") << (owner | P::ReadGroup | P::WriteGroup | P::ReadOther |
                                 P::WriteOther);
}

void TestTextFile::aReplacedFileKeepsItsPermissions() {
  QFETCH(QFile::Permissions, permissions);
  QVERIFY(put(path, "old"));
  QVERIFY(QFile::setPermissions(path, permissions));
  QVERIFY(files::replace(path, "new"));
  QCOMPARE(contentsOf(path), "new");
  QCOMPARE(QFile::permissions(path), permissions);
}

void TestTextFile::aReplacedFileIsTheOwnersAloneWhereThatIsAsked_data() {
  QTest::addColumn<bool>("exists");
  QTest::newRow("a new file") << false;
  QTest::newRow("a file that everybody could read") << true;
}

void TestTextFile::aReplacedFileIsTheOwnersAloneWhereThatIsAsked() {
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

void TestTextFile::aLinkStaysALink_data() {
  QTest::addColumn<QString>("target");
  QTest::addColumn<bool>("exists");
  QTest::newRow("to a file beside it") << u"kept.txt"_s << true;
  QTest::newRow("to a file in another folder") << u"folder/kept.txt"_s << true;
  QTest::newRow("to a link to a file") << u"second"_s << true;
  QTest::newRow("to a file that is missing") << u"folder/missing.txt"_s << false;
}

void TestTextFile::aLinkStaysALink() {
  QFETCH(QString, target);
  QFETCH(bool, exists);
  QVERIFY(QDir().mkdir(u"folder"_s));
  QVERIFY(QFile::link(u"folder/kept.txt"_s, u"second"_s));
  if (exists)
    QVERIFY(put(target, "old"));
  QVERIFY(QFile::link(target, path));

  const auto read = files::read(path);
  QVERIFY(read);
  QCOMPARE(read->bytes, exists ? "old"_ba : ""_ba);
  QVERIFY(files::replace(path, "new"));
  QVERIFY(QFileInfo(path).isSymLink());
  QCOMPARE(contentsOf(target), "new");
}

void TestTextFile::aCopyIsKeptUnderTheFirstFreeName() {
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

  // Not only a file has its name for itself.
  QVERIFY(QDir().mkdir(path + u".bak3"_s));
  QVERIFY(QFile::link(u"./nothing"_s, path + u".bak4"_s));
  QVERIFY(put(path, "third"));
  QVERIFY(files::keepBeside(path));
  QCOMPARE(contentsOf(path + u".bak5"_s), "third");
  QCOMPARE(namesHere().size(), 6);
}

void TestTextFile::aKeptCopyHasThePermissions_data() {
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

void TestTextFile::aKeptCopyHasThePermissions() {
  QFETCH(QFile::Permissions, permissions);
  QFETCH(files::Access, access);
  QFETCH(QFile::Permissions, kept);
  QVERIFY(put(path, "old"));
  QVERIFY(QFile::setPermissions(path, permissions));
  QVERIFY(files::keepBeside(path, access));
  QCOMPARE(QFile::permissions(path + u".bak"_s), kept);
  QCOMPARE(QFile::permissions(path), permissions);
}

void TestTextFile::theLongestFileIsCopied() {
  QVERIFY(put(path, "a\nb\nc"));
  QVERIFY(QFile::resize(path, files::largestFile));
  QVERIFY(files::keepBeside(path));
  QCOMPARE(QFileInfo(path).size(), files::largestFile);
  QCOMPARE(QFileInfo(path + u".bak"_s).size(), files::largestFile);
}

void TestTextFile::aFileTooLongToBeCopiedIsMoved() {
  QVERIFY(put(path, "a\nb\nc"));
  QVERIFY(QFile::resize(path, files::largestFile + 1));
  QVERIFY(files::keepBeside(path));
  QCOMPARE(namesHere(), QStringList{u"table.txt.bak"_s});
  QCOMPARE(QFileInfo(path + u".bak"_s).size(), files::largestFile + 1);
}

void TestTextFile::whatALinkLeadsToIsCopied() {
  QVERIFY(put(u"kept.txt"_s, "old"));
  QVERIFY(QFile::link(u"kept.txt"_s, path));
  QVERIFY(files::keepBeside(path));
  QVERIFY(QFileInfo(path).isSymLink());
  QVERIFY(!QFileInfo(path + u".bak"_s).isSymLink());
  QVERIFY(files::replace(path, "new"));
  QCOMPARE(contentsOf(path + u".bak"_s), "old");
}

void TestTextFile::whatIsNoFileIsNotKept() {
  QVERIFY(files::keepBeside(path));
  QVERIFY(!files::moveBeside(path));
  QCOMPARE(namesHere(), QStringList());
  QVERIFY(QDir().mkdir(path));
  QVERIFY(!files::keepBeside(path));
  QCOMPARE(namesHere(), QStringList{u"table.txt"_s});
}

void TestTextFile::aFileIsMovedToTheFirstFreeName() {
  QVERIFY(put(path, "first"));
  QVERIFY(files::moveBeside(path));
  QCOMPARE(namesHere(), QStringList{u"table.txt.bak"_s});
  QVERIFY(put(path, "second"));
  QVERIFY(files::moveBeside(path));
  QCOMPARE(contentsOf(path + u".bak"_s), "first");
  QCOMPARE(contentsOf(path + u".bak2"_s), "second");
  QCOMPARE(namesHere().size(), 2);
}

void TestTextFile::aFileIsEmptied() {
  QVERIFY(put(path, "old"));
  QVERIFY(files::openAndEmpty(path));
  QCOMPARE(contentsOf(path), QByteArray(""));
  QVERIFY(files::openAndEmpty(u"./new.txt"_s));
  QCOMPARE(namesHere(), (QStringList{u"new.txt"_s, u"table.txt"_s}));
}

KELMORA_TEST_MAIN(TestTextFile)
#include "tst_textfile.moc"

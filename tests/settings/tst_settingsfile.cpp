#include <QFile>
#include <QGuiApplication>
#include <QTest>
#include <unistd.h>

#include "ChangedRecord.h"
#include "FileModes.h"
#include "settings/SettingsFile.h"
#include "support/FileText.h"
#include "support/InChild.h"
#include "support/LogLines.h"
#include "support/OwnFolder.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"
#include "support/SizeLimit.h"

using namespace kelmora;
using namespace kelmora::settings;

namespace {

const QString fileName = QStringLiteral("client.settings");

QByteArray content() {
  return contentsOf(fileName);
}

void write(const QByteArray& bytes) {
  writeFile(fileName, bytes);
}

/// Exports as a user without special rights; the result is one of InChild.h.
int exportAsOrdinaryUser() {
  return asOrdinaryUser([] {
    ClientSettings record;
    record.proxyPassword = QStringLiteral("secret");
    return settings::exportSettings(record, fileName);
  });
}

}  // namespace

/// Writing the options to a file that can be carried elsewhere, and reading it.
class TestSettingsFile : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void theDefaultsAreTheseLines();
  void writes_data();
  void writes();
  void reads_data();
  void reads();
  void refuses_data();
  void refuses();
  void linesBeforeABadOneStay();
  void unchangedSettingsComeBackWhole();
  void everyFieldComesBack();
  void anEmptyHostCannotComeBack();
  void anEmptyStyleCannotComeBack();
  void aMissingFileIsCreatedEmpty();
  void foldersAndMissingFoldersFail();
  void theOwnerAloneCanReadIt_data();
  void theOwnerAloneCanReadIt();
  void anOldFileIsNarrowedBeforeItIsWritten();
  void anExportThatDoesNotFitFails_data();
  void anExportThatDoesNotFitFails();
  void aWriteProtectedFileStaysAsItIs_data();
  void aWriteProtectedFileStaysAsItIs();
  void aFileThatCannotBeNarrowedIsWritten_data();
  void aFileThatCannotBeNarrowedIsWritten();
  void aNameOutsideAsciiIsAnotherFile();
  void aMegabyteIsTheMost_data();
  void aMegabyteIsTheMost();
  void hugeAndBinaryFilesAreRefusedAtOnce_data();
  void hugeAndBinaryFilesAreRefusedAtOnce();
  void aRefusedImportIsLoggedWithItsLine_data();
  void aRefusedImportIsLoggedWithItsLine();
  void aFailedExportIsLogged();
  void whatWentWellIsNotLogged();
};

void TestSettingsFile::init() {
  for (const QString& name : QDir().entryList(QDir::Files))
    QFile::remove(name);
}

void TestSettingsFile::theDefaultsAreTheseLines() {
  const ClientSettings record;
  QVERIFY(settings::exportSettings(record, fileName));
  const QByteArray expected =
      "interfaceStyle Plastique\noutFont " + record.outFont.toString().toLatin1() + "\ninFont " +
      record.inFont.toString().toLatin1() +
      "\niconSize.width 48\niconSize.height 48\ndisplayAnsiColor 1\ndisplayLocalEcho 1\n"
      "playBeeps 1\nparseHtml 0\nflushInput 0\nhostName localhost\nport 5000\n"
      "useProxyServer 0\nproxyType 1\nproxyHostName (null)\nproxyPortNumber 0\n"
      "proxyUserName (null)\nproxyPassword (null)\ndisplayURLs 1\nsplitInput 1\n"
      "splitString ;\nblack #000000\nred #660000\ngreen #006600\nyellow #5E610B\n"
      "blue #000099\nmagenta #990066\ncyan #008080\nwhite #BDBDBD\nblackB #666666\n"
      "redB #FF0000\ngreenB #00FF00\nyellowB #FFFF00\nblueB #2E2EFE\nmagentaB #FF00FF\n"
      "cyanB #00FFFF\nwhiteB #FFFFFF\n";
  QCOMPARE(content(), expected);
}

void TestSettingsFile::writes_data() {
  QTest::addColumn<std::function<void(ClientSettings&)>>("change");
  QTest::addColumn<QByteArray>("line");
  using Change = std::function<void(ClientSettings&)>;
  const auto row = [](const char* name, const Change& change, const char* line) {
    QTest::newRow(name) << change << QByteArray(line);
  };
  row(
      "an empty host is an empty value", [](auto& r) { r.hostName.clear(); }, "hostName \n");
  row(
      "an empty style is an empty value", [](auto& r) { r.interfaceStyle.clear(); },
      "interfaceStyle \n");
  row(
      "an empty separator is (null)", [](auto& r) { r.splitString.clear(); },
      "splitString (null)\n");
  row(
      "a proxy port is its number", [](auto& r) { r.proxyPortNumber = "1080"; },
      "proxyPortNumber 1080\n");
  row(
      "a proxy port that is no number is 0", [](auto& r) { r.proxyPortNumber = "abc"; },
      "proxyPortNumber 0\n");
  row(
      "a password stands as typed", [](auto& r) { r.proxyPassword = "open"; },
      "proxyPassword open\n");
  row(
      "a negative port is written", [](auto& r) { r.port = -1; }, "port -1\n");
  row(
      "Latin-1 is one byte a letter", [](auto& r) { r.hostName = QString::fromUtf8("é"); },
      "hostName \xe9\n");
  row(
      "what is not Latin-1 is a question mark",
      [](auto& r) { r.hostName = QString::fromUtf8("a€b"); }, "hostName a?b\n");
  row(
      "a font family of two words is written whole",
      [](auto& r) { r.outFont = QFont("Two Words", 17); }, "outFont Two Words,17,");
  row(
      "a long value is written whole", [](auto& r) { r.hostName = QString(5000, 'h'); },
      QByteArray("hostName " + QByteArray(5000, 'h') + "\n").constData());
}

void TestSettingsFile::writes() {
  QFETCH(const std::function<void(ClientSettings&)>, change);
  QFETCH(const QByteArray, line);
  ClientSettings record;
  change(record);
  QVERIFY(settings::exportSettings(record, fileName));
  QVERIFY2(content().contains("\n" + line) || content().startsWith(line), content().constData());
}

void TestSettingsFile::reads_data() {
  QTest::addColumn<QByteArray>("lines");
  QTest::addColumn<std::function<void(ClientSettings&)>>("change");
  using Change = std::function<void(ClientSettings&)>;
  const auto row = [](const char* name, const QByteArray& lines, const Change& change) {
    QTest::newRow(name) << lines << change;
  };
  row("a file without lines changes nothing", "", [](auto&) {});
  row("a style", "interfaceStyle Fusion\n", [](auto& r) { r.interfaceStyle = "Fusion"; });
  row("a font", "outFont Courier,14,-1,5,50,0,0,0,0,0\n",
      [](auto& r) { r.outFont.fromString("Courier,14,-1,5,50,0,0,0,0,0"); });
  row("a font family of two words comes back as its first", "inFont Ubuntu Mono,14\n", [](auto& r) {
    r.inFont = QFont();
    r.inFont.fromString("Ubuntu");
  });
  row("one side of the icons", "iconSize.width 32\n", [](auto& r) { r.iconSize.setWidth(32); });
  row("the other side", "iconSize.height 16\n", [](auto& r) { r.iconSize.setHeight(16); });
  row("a number ends where its digits end", "port 4023x\n", [](auto& r) { r.port = 4023; });
  row("no digits are 0", "port x\n", [](auto& r) { r.port = 0; });
  row("a flag is any number but 0", "parseHtml 7\nflushInput -1\n",
      [](auto& r) { r.parseHtml = r.flushInput = true; });
  row("a flag of no digits is off", "displayURLs yes\n", [](auto& r) { r.displayURLs = false; });
  row("(null) is the empty text",
      "splitString (null)\nproxyHostName (null)\nproxyUserName (null)\nproxyPassword (null)\n",
      [](auto& r) { r.splitString.clear(); });
  row("(null) is a host name like any other", "hostName (null)\n",
      [](auto& r) { r.hostName = "(null)"; });
  row("a proxy port is kept as text", "proxyPortNumber 1080x\n",
      [](auto& r) { r.proxyPortNumber = "1080x"; });
  row("a proxy port of 0 is the empty text", "proxyPortNumber 0\n", [](auto&) {});
  row("a proxy port of no digits is the empty text", "proxyPortNumber abc\n", [](auto&) {});
  row("a colour is taken as it stands", "white #abcdef\nblackB x\n", [](auto& r) {
    r.normalColour[7].assign("#abcdef");
    r.boldColour[0].assign("x");
  });
  row("a colour is cut to seven characters", "red #abcdef0123\n",
      [](auto& r) { r.normalColour[1].assign("#abcdef"); });
  row("the last of two lines counts", "port 1\nport 2\n", [](auto& r) { r.port = 2; });
  row("blanks around are skipped, words behind ignored", "  port\t 4000  and more\r\n",
      [](auto& r) { r.port = 4000; });
  row("the last line needs no line break", "port 4000", [](auto& r) { r.port = 4000; });
  row("a value is cut after 1023 bytes", "hostName " + QByteArray(2000, 'h') + "\n",
      [](auto& r) { r.hostName = QString(1023, 'h'); });
  row("bytes are Latin-1", "hostName \xe9\n", [](auto& r) { r.hostName = QString::fromUtf8("é"); });
}

void TestSettingsFile::reads() {
  QFETCH(const QByteArray, lines);
  QFETCH(const std::function<void(ClientSettings&)>, change);
  write(lines);
  ClientSettings expected;
  change(expected);
  ClientSettings record;
  QVERIFY(settings::importSettings(record, fileName));
  QVERIFY(record == expected);
}

void TestSettingsFile::refuses_data() {
  QTest::addColumn<QByteArray>("lines");
  QTest::newRow("an unknown key") << QByteArray("colour red\n");
  QTest::newRow("a key in other letters") << QByteArray("Port 5000\n");
  QTest::newRow("the store's name of a font") << QByteArray("outfont Courier\n");
  QTest::newRow("the icons' size in one line") << QByteArray("iconSize 48\n");
  QTest::newRow("a key without a value") << QByteArray("port\n");
  QTest::newRow("an empty line") << QByteArray("\n");
  QTest::newRow("an empty line before the first") << QByteArray("\nport 4000\n");
  QTest::newRow("a line of blanks") << QByteArray("   \n");
  QTest::newRow("a key cut at 1023 bytes") << "port" + QByteArray(2000, 't') + " 1\n";
  QTest::newRow("a NUL before the value") << QByteArray("port\0 5000\n", 11);
}

void TestSettingsFile::refuses() {
  QFETCH(const QByteArray, lines);
  write(lines);
  ClientSettings record;
  QVERIFY(!settings::importSettings(record, fileName));
  QVERIFY(record == ClientSettings());
}

void TestSettingsFile::linesBeforeABadOneStay() {
  write("port 4000\n\nhostName other\n");
  ClientSettings record;
  QVERIFY(!settings::importSettings(record, fileName));
  QCOMPARE(record.port, 4000);
  QCOMPARE(record.hostName, ClientSettings().hostName);
}

void TestSettingsFile::unchangedSettingsComeBackWhole() {
  ClientSettings record;
  record.proxyPassword = "secret";
  record.port = 23;
  record.parseHtml = true;
  record.iconSize = {16, 24};
  record.normalColour[3].assign("#123456");
  record.inFont.setPointSize(17);
  QVERIFY(settings::exportSettings(record, fileName));
  ClientSettings other;
  other.splitString = "changed";
  other.proxyPortNumber = "99";
  QVERIFY(settings::importSettings(other, fileName));
  // Fonts are compared by their texts. The defaults are texts of an old, shorter
  // form, which leave out some of what a font has.
  QCOMPARE(other.inFont.toString(), record.inFont.toString());
  QCOMPARE(other.outFont.toString(), record.outFont.toString());
  other.inFont = record.inFont;
  other.outFont = record.outFont;
  QVERIFY(other == record);
}

void TestSettingsFile::everyFieldComesBack() {
  const ClientSettings defaults;
  const ClientSettings record = changedRecord();
  QVERIFY(settings::exportSettings(record, fileName));
  ClientSettings other;
  QVERIFY(settings::importSettings(other, fileName));
  for (const SettingsField& field : settings::fields()) {
    const QVariant expected = settings::storedValue(record, field);
    QVERIFY2(expected != settings::storedValue(defaults, field), field.exportKey);
    QVERIFY2(settings::storedValue(other, field) == expected, field.exportKey);
  }
  // Members that the table does not know would differ here. Fonts were compared
  // by their text above.
  other.inFont = record.inFont;
  other.outFont = record.outFont;
  QVERIFY(other == record);
}

void TestSettingsFile::anEmptyHostCannotComeBack() {
  ClientSettings record;
  record.hostName.clear();
  record.port = 23;
  QVERIFY(settings::exportSettings(record, fileName));
  ClientSettings other;
  QVERIFY(!settings::importSettings(other, fileName));
  QCOMPARE(other.port, 5000);
}

void TestSettingsFile::anEmptyStyleCannotComeBack() {
  ClientSettings record;
  record.interfaceStyle.clear();
  record.port = 23;
  QVERIFY(settings::exportSettings(record, fileName));
  ClientSettings other;
  QVERIFY(!settings::importSettings(other, fileName));
  QCOMPARE(other.port, 5000);
}

void TestSettingsFile::aMissingFileIsCreatedEmpty() {
  ClientSettings record;
  QVERIFY(settings::importSettings(record, fileName));
  QCOMPARE(content(), QByteArray());
  QVERIFY(record == ClientSettings());
}

void TestSettingsFile::foldersAndMissingFoldersFail() {
  ClientSettings record;
  QVERIFY(QDir().mkpath("folder.settings"));
  QVERIFY(!settings::exportSettings(record, "folder.settings"));
  QVERIFY(!settings::importSettings(record, "folder.settings"));
  QVERIFY(!settings::exportSettings(record, "nowhere/client.settings"));
  QVERIFY(!settings::importSettings(record, "nowhere/client.settings"));
}

void TestSettingsFile::theOwnerAloneCanReadIt_data() {
  QTest::addColumn<bool>("existing");
  QTest::newRow("a new file") << false;
  QTest::newRow("a file that everybody could read") << true;
}

void TestSettingsFile::theOwnerAloneCanReadIt() {
  QFETCH(const bool, existing);
  const NoUmask noUmask;
  if (existing)
    write("old");
  QVERIFY(settings::exportSettings(ClientSettings(), fileName));
  QCOMPARE(modeOf(fileName), 0600);
}

void TestSettingsFile::anOldFileIsNarrowedBeforeItIsWritten() {
  const NoUmask noUmask;
  write("an older password");
  QCOMPARE(modeOf(fileName), 0666);
  // A second name of the old file shows what became of that file.
  QCOMPARE(::link(QFile::encodeName(fileName).constData(), "other name"), 0);
  QVERIFY(settings::exportSettings(ClientSettings(), fileName));
  QCOMPARE(modeOf(fileName), 0600);
  QCOMPARE(contentsOf("other name"), QByteArray("an older password"));
  QCOMPARE(modeOf("other name"), 0600);
}

void TestSettingsFile::anExportThatDoesNotFitFails_data() {
  QTest::addColumn<bool>("existing");
  QTest::newRow("a new file is not left behind") << false;
  QTest::newRow("an old file stands") << true;
}

void TestSettingsFile::anExportThatDoesNotFitFails() {
  QFETCH(const bool, existing);
  const OwnFolder folder;
  if (existing)
    write("old");
  {
    const SizeLimit fullDisk(300);
    QVERIFY(!settings::exportSettings(ClientSettings(), fileName));
  }
  QCOMPARE(namesHere(), existing ? QStringList{fileName} : QStringList());
  QCOMPARE(content(), existing ? QByteArray("old") : QByteArray("(none)"));
}

void TestSettingsFile::aWriteProtectedFileStaysAsItIs_data() {
  QTest::addColumn<bool>("own");
  QTest::newRow("the player's own") << true;
  QTest::newRow("another user's") << false;
}

void TestSettingsFile::aWriteProtectedFileStaysAsItIs() {
  QFETCH(const bool, own);
  const OwnFolder folder;
  QVERIFY(folder.isValid());
  write("old");
  QCOMPARE(::chmod(QFile::encodeName(fileName).constData(), 0444), 0);
  QCOMPARE(::chmod(".", 0777), 0);
  const bool root = ::geteuid() == 0;
  if (!own && !root)
    QSKIP("this user can make no file of another's");
  constexpr uid_t nobody = 65534;
  if (own && root)
    QCOMPARE(::chown(QFile::encodeName(fileName).constData(), nobody, static_cast<gid_t>(-1)), 0);
  const int result = exportAsOrdinaryUser();
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, notAsWished);
  QCOMPARE(content(), QByteArray("old"));
  QCOMPARE(modeOf(fileName), 0444);
  QCOMPARE(namesHere(), QStringList{fileName});
}

void TestSettingsFile::aFileThatCannotBeNarrowedIsWritten_data() {
  QTest::addColumn<int>("folderMode");
  QTest::addColumn<int>("mode");
  QTest::newRow("where it can be replaced, by a private one") << 0777 << 0600;
  QTest::newRow("where others' files cannot be replaced, in place") << 01777 << 0666;
  QTest::newRow("where no file can be made, in place") << 0755 << 0666;
}

void TestSettingsFile::aFileThatCannotBeNarrowedIsWritten() {
  QFETCH(const int, folderMode);
  QFETCH(const int, mode);
  if (::geteuid() != 0)
    QSKIP("this user can make no file of another's");
  const OwnFolder folder;
  QVERIFY(folder.isValid());
  write("old");
  QCOMPARE(::chmod(QFile::encodeName(fileName).constData(), 0666), 0);
  QCOMPARE(::chmod(".", static_cast<mode_t>(folderMode)), 0);
  const int result = exportAsOrdinaryUser();
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QCOMPARE(result, asWished);
  QVERIFY(content().contains("\nproxyPassword secret\n"));
  QVERIFY(content().endsWith("\nwhiteB #FFFFFF\n"));
  QCOMPARE(modeOf(fileName), mode);
  QCOMPARE(namesHere(), QStringList{fileName});
}

void TestSettingsFile::aNameOutsideAsciiIsAnotherFile() {
  const QString chosen = QString::fromUtf8("réglages.settings");
  QVERIFY(settings::exportSettings(ClientSettings(), chosen));
  QVERIFY(!QFile::exists(chosen));
  QVERIFY(QFile::exists(QString::fromUtf8("r\ufffdglages.settings")));
  ClientSettings record;
  QVERIFY(settings::importSettings(record, chosen));
}

void TestSettingsFile::aMegabyteIsTheMost_data() {
  QTest::addColumn<qsizetype>("size");
  QTest::addColumn<QByteArray>("end");
  QTest::addColumn<bool>("isRead");
  constexpr qsizetype megabyte = qsizetype{1024} * 1024;
  QTest::newRow("a megabyte to the last line break") << megabyte << QByteArray("\n") << true;
  QTest::newRow("a megabyte without one") << megabyte << QByteArray() << true;
  QTest::newRow("a byte more, the line break") << megabyte + 1 << QByteArray("\n") << false;
  QTest::newRow("a byte more of the last line") << megabyte + 1 << QByteArray() << false;
  QTest::newRow("a byte more behind the last line") << megabyte + 1 << QByteArray("\np") << false;
}

void TestSettingsFile::aMegabyteIsTheMost() {
  QFETCH(const qsizetype, size);
  QFETCH(const QByteArray, end);
  QFETCH(const bool, isRead);
  const QByteArray line = "port 4000\n";
  const QByteArray last = "splitString ab";
  QByteArray file = line.repeated((size - 100) / line.size());
  file += last;
  file += QByteArray(size - file.size() - end.size(), ' ') + end;
  QCOMPARE(file.size(), size);
  write(file);
  ClientSettings record;
  QCOMPARE(settings::importSettings(record, fileName), isRead);
  // The lines within the first megabyte stay taken over.
  QCOMPARE(record.port, 4000);
  QCOMPARE(record.splitString, isRead || end.endsWith('p') ? QString("ab") : QString(";"));
}

void TestSettingsFile::hugeAndBinaryFilesAreRefusedAtOnce_data() {
  QTest::addColumn<QByteArray>("start");
  QTest::addColumn<qint64>("size");
  constexpr qint64 hundredMegabytes = qint64{100} * 1024 * 1024;
  QTest::newRow("a hundred megabytes of nothing") << QByteArray() << hundredMegabytes;
  QTest::newRow("a value of a hundred megabytes") << QByteArray("hostName ") << hundredMegabytes;
  QTest::newRow("five megabytes of good lines")
      << QByteArray("port 4000\n").repeated(500000) << qint64(0);
  QTest::newRow("a program's start") << QByteArray(
                                            "\x7f"
                                            "ELF\x02\x01\x01\0\0\0\0",
                                            11)
                                     << qint64(0);
}

void TestSettingsFile::hugeAndBinaryFilesAreRefusedAtOnce() {
  QFETCH(const QByteArray, start);
  QFETCH(const qint64, size);
  QFile file(fileName);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(start);
  if (size > 0)
    QVERIFY(file.resize(size));
  file.close();
  ClientSettings record;
  ProcessorClock clock;
  clock.start();
  QVERIFY(!settings::importSettings(record, fileName));
  QVERIFY(clock.elapsed() < 1000);
}

void TestSettingsFile::aRefusedImportIsLoggedWithItsLine_data() {
  QTest::addColumn<QByteArray>("lines");
  QTest::addColumn<QString>("said");
  QTest::newRow("an unknown key") << QByteArray("port 4000\nproxyPasword secret\n")
                                  << "the import stopped at line 2 of \"client.settings\" because "
                                     "its key is not known";
  QTest::newRow("a key without a value")
      << QByteArray("secret\n")
      << "the import stopped at line 1 of \"client.settings\" because "
         "it is no key with a value";
  QTest::newRow("more than a megabyte")
      << QByteArray("port 4000\n").repeated(200'000)
      << "the import stopped at line 104858 of \"client.settings\" because "
         "the file was not read from there on";
}

void TestSettingsFile::aRefusedImportIsLoggedWithItsLine() {
  QFETCH(const QByteArray, lines);
  QFETCH(const QString, said);
  write(lines);
  const LogLines log("kelmora.files");
  ClientSettings record;
  QVERIFY(!settings::importSettings(record, fileName));
  QCOMPARE(log.lines().last(), said);
  QVERIFY(!log.lines().join('|').contains("secret"));
}

void TestSettingsFile::aFailedExportIsLogged() {
  ClientSettings record;
  record.proxyPassword = "secret";
  const LogLines log("kelmora.files");
  QVERIFY(!settings::exportSettings(record, "nowhere/client.settings"));
  QVERIFY(!settings::importSettings(record, "nowhere/client.settings"));
  QVERIFY(log.lines().contains("settings were not exported to \"nowhere/client.settings\""));
  QVERIFY(
      log.lines().contains("no settings were imported: cannot open \"nowhere/client.settings\""));
  QVERIFY(!log.lines().join('|').contains("secret"));
}

void TestSettingsFile::whatWentWellIsNotLogged() {
  const LogLines log("kelmora.files");
  ClientSettings record;
  QVERIFY(settings::exportSettings(record, fileName));
  QVERIFY(settings::importSettings(record, fileName));
  QCOMPARE(log.lines(), QStringList());
}

KELMORA_VALUE_TEST_MAIN(TestSettingsFile)
#include "tst_settingsfile.moc"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLockFile>
#include <QSettings>
#include <QTest>
#include <QThread>
#include <atomic>
#include <csignal>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "ChangedRecord.h"
#include "FileModes.h"
#include "settings/SettingsStore.h"
#include "support/FileText.h"
#include "support/InChild.h"
#include "support/LogLines.h"
#include "support/ScratchMain.h"
#include "support/SizeLimit.h"

using namespace kelmora;
using namespace kelmora::settings;

namespace {

constexpr auto folderMode = S_IRUSR | S_IWUSR | S_IXUSR;
constexpr auto fileMode = S_IRUSR | S_IWUSR;

QString configFolder() {
  return QDir::currentPath() + QStringLiteral("/config");
}
QString folder() {
  return configFolder() + QStringLiteral("/client");
}
QString file() {
  return folder() + QStringLiteral("/store.conf");
}
WindowPlace load(ClientSettings& record) {
  return SettingsStore({file()}).load(record);
}
void save(const ClientSettings& record, const WindowPlace& place) {
  SettingsStore({file()}).save(record, place);
}

/// The toolkit keeps a copy of the store in memory until the file has another size
/// or time. A new start of the client has no such copy, so a test that stands for
/// one gives the file another time.
[[nodiscard]] bool makeTheToolkitReadAgain() {
  static qint64 seconds = 0;
  QFile touched(file());
  return touched.open(QIODevice::ReadWrite) &&
         touched.setFileTime(QDateTime::fromSecsSinceEpoch(++seconds),
                             QFileDevice::FileModificationTime);
}

bool write(const QByteArray& content) {
  QFile out(file());
  const bool written = QDir().mkpath(folder()) && out.open(QIODevice::WriteOnly) &&
                       out.write(content) == content.size();
  out.close();
  return written && makeTheToolkitReadAgain();
}

bool writeGroup(const QByteArray& lines) {
  return write("[Global%20Settings]\n" + lines);
}

QByteArray content() {
  return contentsOf(file());
}

QStringList namesInFolder() {
  return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

QStringList storedKeys() {
  QSettings reader(file(), QSettings::IniFormat);
  reader.beginGroup(QStringLiteral("Global Settings"));
  return reader.allKeys();
}

/// A thread that looks all the time for a file of the folder that others can read.
class Watcher : public QThread {
 public:
  ~Watcher() override {
    stop_ = true;
    wait();
  }
  [[nodiscard]] bool sawWideSecrets() const { return wide_; }
  [[nodiscard]] int looks() const { return looks_; }

 protected:
  void run() override {
    while (!stop_) {
      const auto names = QDir(folder()).entryList(QDir::Files | QDir::Hidden);
      for (const QString& name : names) {
        const int mode = modeOf(folder() + u'/' + name);
        if (!name.endsWith(QStringLiteral(".lock")) && mode >= 0 && (mode & 077) != 0)
          wide_ = true;
      }
      ++looks_;
    }
  }

 private:
  std::atomic<bool> stop_ = false;
  std::atomic<bool> wide_ = false;
  std::atomic<int> looks_ = 0;
};

}  // namespace

class TestSettingsStore : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup();

  void theUsersOwnStoreIsTheNativeOne();
  void aFirstStartYieldsTheDefaultsAndWritesNothing();
  void aSaveHoldsEveryKeyAndNoOther();
  void aSaveHoldsThePlainForms();
  void keysOfOthersSurviveASave();
  void aChangedRecordComesBackWhole();
  void aTextComesBackAsItWas_data();
  void aTextComesBackAsItWas();
  void oneStoredValue_data();
  void oneStoredValue();
  void loadWritesNothing();
  void oneMissingKeyIsItsDefault();
  void aStoreThatIsNoneYieldsTheDefaults_data();
  void aStoreThatIsNoneYieldsTheDefaults();
  void aFolderInPlaceOfTheStoreIsLeftAlone();
  void anUnreadableStoreYieldsTheDefaults();
  void aStoreThatIsNoneOfOursYieldsTheDefaultsAndGivesWay_data();
  void aStoreThatIsNoneOfOursYieldsTheDefaultsAndGivesWay();
  void aPipeInPlaceOfTheStoreYieldsTheDefaults();
  void theLargestStoreIsOpened_data();
  void theLargestStoreIsOpened();
  void aDamagedStoreIsKeptBeside_data();
  void aDamagedStoreIsKeptBeside();
  void aDamageThatOnlyTheSaveMeetsIsKeptToo();
  void whatCannotBeKeptIsNotWrittenOver();
  void aRefusedStoreInALockedFolderStands();
  void nothingIsWrittenThatTheNextLoadRefuses_data();
  void nothingIsWrittenThatTheNextLoadRefuses();
  void othersKeysCountTowardsWhatIsRefused();
  void aDiskWithoutRoomForLongOptionsLeavesTheOldOnes();

  void aNewStoreAndItsFoldersAreTheOwnersAlone();
  void anExistingStoreIsNarrowedBeforeItIsWritten_data();
  void anExistingStoreIsNarrowedBeforeItIsWritten();
  void anExistingFolderKeepsItsPermissions();
  void aLinkedStoreStaysALink_data();
  void aLinkedStoreStaysALink();
  void theStoreIsNeverReadableByOthers();
  void theLockOfAKilledClientHoldsUpNoSave_data();
  void theLockOfAKilledClientHoldsUpNoSave();
  void aLockThatIsTakenAwayLeavesNothingOpen();
  void theLockOfALivingClientIsRespected();

  void whatWasNotReadIsLogged_data();
  void whatWasNotReadIsLogged();
  void aSaveThatFailsIsLogged_data();
  void aSaveThatFailsIsLogged();
  void whatWentWellIsNotLogged();
};

void TestSettingsStore::cleanup() {
  QVERIFY(QDir(configFolder()).removeRecursively());
}

void TestSettingsStore::theUsersOwnStoreIsTheNativeOne() {
  const QString native =
      QSettings(QStringLiteral("Dunmere Works"), QStringLiteral("Kelmora Client v3.9b")).fileName();
  if (!native.startsWith(QDir::currentPath()))
    QSKIP("here the user's own store cannot be led to the scratch folder");
  ClientSettings record;
  record.port = 4023;
  const WindowPlace place{QSize(640, 480), QPoint(5, 7)};
  const NoUmask noUmask;
  SettingsStore({}).save(record, place);
  QCOMPARE(modeOf(native), fileMode);
  QCOMPARE(modeOf(QFileInfo(native).path()), folderMode);
  ClientSettings loaded;
  QCOMPARE(SettingsStore({}).load(loaded), place);
  QCOMPARE(loaded, record);
  // A file that is too long is refused there, too.
  QFile file(native);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write("[Global%20Settings]\nport=4024\nhostName=" + QByteArray(2'000'000, 'k'));
  file.close();
  QCOMPARE(SettingsStore({}).load(loaded), WindowPlace());
  QCOMPARE(loaded, ClientSettings());
  QVERIFY(!QFileInfo::exists(configFolder()));
  QVERIFY(QDir(QFileInfo(native).path()).removeRecursively());
}

void TestSettingsStore::aFirstStartYieldsTheDefaultsAndWritesNothing() {
  ClientSettings record;
  record.port = 1;
  record.hostName = QStringLiteral("elsewhere");
  record.boldColour[3].assign("#111111");
  const WindowPlace place = load(record);
  QCOMPARE(record, ClientSettings());
  QCOMPARE(place.size, QSize(800, 800));
  QCOMPARE(place.pos, QPoint(200, 200));
  QVERIFY(!QFileInfo::exists(folder()));
  QVERIFY(!QFileInfo::exists(configFolder()));
}

void TestSettingsStore::aSaveHoldsEveryKeyAndNoOther() {
  save(ClientSettings(), WindowPlace());
  QStringList expected = {QStringLiteral("size"), QStringLiteral("pos")};
  for (const SettingsField& field : settings::fields())
    expected << QString::fromLatin1(field.storeKey);
  QStringList keys = storedKeys();
  keys.sort();
  expected.sort();
  QCOMPARE(keys, expected);

  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  QCOMPARE(record, ClientSettings());
}

void TestSettingsStore::aSaveHoldsThePlainForms() {
  ClientSettings record;
  record.proxyPassword = QStringLiteral("open sesame");
  save(record, {QSize(640, 480), QPoint(-5, 7)});
  const QByteArray text = content();
  QVERIFY(text.contains("\ndisplayAnsiColor=1\n"));
  QVERIFY(text.contains("\nparseHtml=0\n"));
  QVERIFY(text.contains("\nport=5000\n"));
  QVERIFY(text.contains("\nproxyPassword=open sesame\n"));
  QVERIFY(text.contains("\nproxyPortNumber=\n"));
  QVERIFY(text.contains("\niconSize=@Size(48 48)\n"));
  QVERIFY(text.contains("\nsize=@Size(640 480)\n"));
  QVERIFY(text.contains("\npos=@Point(-5 7)\n"));
  QVERIFY(text.contains("\nwhite=#BDBDBD\n"));
  QVERIFY(text.contains("\noutfont=\"" + ClientSettings().outFont.toString().toUtf8() + "\"\n"));
}

void TestSettingsStore::keysOfOthersSurviveASave() {
  QVERIFY(writeGroup("ofTomorrow=1\n"));
  save(ClientSettings(), WindowPlace());
  QVERIFY(storedKeys().contains("ofTomorrow"));
}

void TestSettingsStore::aChangedRecordComesBackWhole() {
  ClientSettings record = changedRecord();
  record.outFont.setFamily(QStringLiteral("Two Words"));
  record.inFont.setPixelSize(23);
  record.splitString = QStringLiteral("  ");
  record.port = std::numeric_limits<int>::min();
  const WindowPlace place{QSize(321, 123), QPoint(-40, 3000)};
  save(record, place);
  QVERIFY(makeTheToolkitReadAgain());
  ClientSettings loaded;
  QCOMPARE(load(loaded), place);
  for (const SettingsField& field : settings::fields())
    QCOMPARE(settings::storedValue(loaded, field), settings::storedValue(record, field));
  QCOMPARE(loaded, record);
}

void TestSettingsStore::aTextComesBackAsItWas_data() {
  QTest::addColumn<QString>("text");
  QTest::newRow("empty") << QString();
  QTest::newRow("no number") << QStringLiteral("abc");
  QTest::newRow("a number with a zero before it") << QStringLiteral("007");
  QTest::newRow("blanks at both ends") << QStringLiteral("  a b  ");
  QTest::newRow("a comma, a quote, a semicolon") << QStringLiteral("a,b;\"c\"\\");
  QTest::newRow("an at sign first") << QStringLiteral("@Size(1 2)");
  QTest::newRow("line ends and tabs") << QStringLiteral("a\r\nb\tc");
  QTest::newRow("beyond Latin-1") << QStringLiteral("\u00e9\u20ac\u6f22\U0001F600");
  QTest::newRow("a zero character") << QString(QChar(0)) + u'x';
  QTest::newRow("hexadecimal digits after an escape") << QStringLiteral("\u0001f\u00ffa");
  QTest::newRow("a hundred thousand characters") << QString(100000, u'k');
}

void TestSettingsStore::aTextComesBackAsItWas() {
  QFETCH(QString, text);
  ClientSettings record;
  for (QString ClientSettings::*field :
       {&ClientSettings::splitString, &ClientSettings::hostName, &ClientSettings::proxyHostName,
        &ClientSettings::proxyPortNumber, &ClientSettings::proxyUserName,
        &ClientSettings::proxyPassword, &ClientSettings::interfaceStyle})
    record.*field = text;
  save(record, WindowPlace());
  QVERIFY(makeTheToolkitReadAgain());
  ClientSettings loaded;
  QCOMPARE(load(loaded), WindowPlace());
  QCOMPARE(loaded, record);
}

void TestSettingsStore::oneStoredValue_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<QByteArray>("key");
  QTest::addColumn<QVariant>("expected");
  const auto row = [](const char* name, const char* line, const char* key, const QVariant& value) {
    QTest::newRow(name) << QByteArray(line) << QByteArray(key) << value;
  };
  row("any number but zero is on", "parseHtml=7", "parseHtml", 1);
  row("zero is off", "displayURLs=0", "displayURLs", 0);
  row("a word is off", "displayURLs=abc", "displayURLs", 0);
  row("the word true is off", "displayURLs=true", "displayURLs", 0);
  row("nothing is off", "displayURLs=", "displayURLs", 0);
  row("a list is off", "displayURLs=1, 1", "displayURLs", 0);
  row("an invalid value is off", "displayURLs=@Invalid()", "displayURLs", 0);
  row("a port that is no number is 0", "port=x", "port", 0);
  row("a port beyond int is what the toolkit makes of it", "port=4294967297", "port",
      QVariant(QStringLiteral("4294967297")).toInt());
  row("a port beyond 16 bits is kept", "port=65537", "port", 65537);
  row("a size that is none is invalid", "iconSize=large", "iconSize", QSize());
  row("a giant size is kept", "iconSize=@Size(2147483647 -3)", "iconSize",
      QSize(std::numeric_limits<int>::max(), -3));
  row("a point is no size", "iconSize=@Point(3 4)", "iconSize", QSize());
  row("half a surrogate pair is no text", "hostName=\"about \\xdb6dz\"", "hostName",
      QStringLiteral("about \uFFFDz"));
  row("a size is no text", "hostName=@Size(3 4)", "hostName", QString());
  row("a long colour is cut", "red=#12345678901234567890", "red", QStringLiteral("#123456"));
  row("a colour of eight characters is cut", "whiteB=#1234567", "whiteB",
      QStringLiteral("#123456"));
  row("a colour ends at a zero", "red=#1\\x0\\x32", "red", QStringLiteral("#1"));
  row("a rubbish serial value is no text", "hostName=@Variant(\\0\\0\\0\\x7f\\xff\\xff\\xff\\xff)",
      "hostName", QString());
  row("a monstrous font is bounded", "infont=\"Courier,100000,-1,5,50,0,0,0,0,0\"", "infont",
      QFont(QStringLiteral("Courier"), 200).toString());
  QFont familyAlone;
  familyAlone.setFamily(QStringLiteral("Courier"));
  row("a single word is a font family", "infont=Courier", "infont", familyAlone.toString());
}

void TestSettingsStore::oneStoredValue() {
  QFETCH(QByteArray, line);
  QFETCH(QByteArray, key);
  QFETCH(QVariant, expected);
  QVERIFY(writeGroup(line + '\n'));
  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  const ClientSettings defaults;
  for (const SettingsField& field : settings::fields())
    QCOMPARE(settings::storedValue(record, field),
             key == field.storeKey ? expected : settings::storedValue(defaults, field));
}

void TestSettingsStore::loadWritesNothing() {
  const QByteArray before = "[Global%20Settings]\nport=4023\nred=#toolongtexthere\n";
  QVERIFY(write(before));
  QVERIFY(QFile::setPermissions(file(), QFile::ReadOwner | QFile::ReadOther));
  const int mode = modeOf(file());
  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  QCOMPARE(record.port, 4023);
  QCOMPARE(content(), before);
  QCOMPARE(modeOf(file()), mode);
  QCOMPARE(QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
           1);
}

void TestSettingsStore::oneMissingKeyIsItsDefault() {
  const ClientSettings changed = changedRecord();
  for (const SettingsField& missing : settings::fields()) {
    save(changed, WindowPlace());
    {
      QSettings writer(file(), QSettings::IniFormat);
      writer.remove(QStringLiteral("Global Settings/") + QLatin1String(missing.storeKey));
    }
    ClientSettings record;
    QCOMPARE(load(record), WindowPlace());
    for (const SettingsField& field : settings::fields())
      QCOMPARE(settings::storedValue(record, field),
               settings::storedValue(&field == &missing ? ClientSettings() : changed, field));
  }
}

void TestSettingsStore::aStoreThatIsNoneYieldsTheDefaults_data() {
  QTest::addColumn<QByteArray>("bytes");
  QTest::newRow("an empty file") << QByteArray();
  QTest::newRow("zero bytes") << QByteArray(4096, '\0');
  QByteArray binary;
  for (int i = 0; i < 70000; ++i)
    binary += static_cast<char>((i * 7919) >> 3);
  QTest::newRow("binary rubbish") << binary;
  QTest::newRow("an open bracket") << QByteArray("[Global%20Settings");
  QTest::newRow("another group") << QByteArray("[Others]\nport=1\n");
  QTest::newRow("no group") << QByteArray("port=1\n");
  QTest::newRow("one endless line") << QByteArray(3000000, 'x');
  QTest::newRow("a backslash at the end") << QByteArray("[Global%20Settings]\nfoo=\\");
}

void TestSettingsStore::aStoreThatIsNoneYieldsTheDefaults() {
  QFETCH(QByteArray, bytes);
  QVERIFY(write(bytes));
  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  QCOMPARE(record, ClientSettings());

  record.port = 23;
  save(record, WindowPlace());
  QVERIFY(makeTheToolkitReadAgain());
  ClientSettings loaded;
  QCOMPARE(load(loaded), WindowPlace());
  QCOMPARE(loaded, record);
  QCOMPARE(modeOf(file()), fileMode);
}

void TestSettingsStore::aFolderInPlaceOfTheStoreIsLeftAlone() {
  QVERIFY(QDir().mkpath(file() + QStringLiteral("/inner")));
  const int before = modeOf(file());
  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  QCOMPARE(record, ClientSettings());
  save(record, WindowPlace());
  QVERIFY(QFileInfo(file() + QStringLiteral("/inner")).isDir());
  QCOMPARE(modeOf(file()), before);
}

void TestSettingsStore::aStoreThatIsNoneOfOursYieldsTheDefaultsAndGivesWay_data() {
  QTest::addColumn<QByteArray>("line");
  const auto nested = [](const QByteArray& list, int depth) {
    return "hostName=\"@Variant(" + list.repeated(depth) + ")\"\n";
  };
  // A list that holds a list, and so on.
  QTest::newRow("a value nested too deep, in bytes")
      << nested(QByteArray("\0\0\0\x9\0\0\0\x1", 8), 100'000);
  QTest::newRow("a value nested too deep, escaped") << nested(R"(\0\0\0\x9\0\0\0\x1)", 50'000);
  QTest::newRow("a value nested too deep, escaped otherwise")
      << nested(R"(\x0\x0\x0\x9\x0\x0\x0\x1)", 40'000);
  QTest::newRow("two megabytes") << "hostName=" + QByteArray(2'000'000, 'k') + '\n';
}

void TestSettingsStore::aStoreThatIsNoneOfOursYieldsTheDefaultsAndGivesWay() {
  QFETCH(const QByteArray, line);
  const NoUmask noUmask;
  const QByteArray refused = "[Global%20Settings]\nport=4023\n" + line;
  QVERIFY(write(refused));
  ClientSettings record;
  record.port = 1;
  QCOMPARE(load(record), WindowPlace());
  QCOMPARE(record, ClientSettings());
  record.port = 11995;
  save(record, WindowPlace());
  QVERIFY(makeTheToolkitReadAgain());
  ClientSettings loaded;
  QCOMPARE(load(loaded), WindowPlace());
  QCOMPARE(loaded.port, 11995);
  // The refused store is kept as .bak, and the next one as .bak2.
  QVERIFY(contentsOf(file() + ".bak") == refused);
  QCOMPARE(modeOf(file() + ".bak"), fileMode);
  QVERIFY(write("again" + refused));
  save(record, WindowPlace());
  QVERIFY(contentsOf(file() + ".bak2") == "again" + refused);
  QCOMPARE(namesInFolder(), (QStringList{"store.conf", "store.conf.bak", "store.conf.bak2"}));
}

void TestSettingsStore::theLargestStoreIsOpened_data() {
  QTest::addColumn<QByteArray>("value");
  QTest::addColumn<bool>("isOpened");
  const QByteArray start = "[Global%20Settings]\nport=4023\nofOthers=";
  const qsizetype rest = qsizetype{1024} * 1024 - start.size();
  QTest::newRow("a megabyte") << QByteArray(rest, 'k') << true;
  QTest::newRow("a byte more") << QByteArray(rest + 1, 'k') << false;
  QTest::newRow("ten thousand zeros") << QByteArray(10'000, '\0') << true;
  QTest::newRow("a zero more") << QByteArray(10'001, '\0') << false;
  QTest::newRow("a zero more, escaped") << QByteArray("\\0").repeated(10'001) << false;
  QTest::newRow("a zero more, escaped otherwise") << QByteArray("\\x0").repeated(10'001) << false;
}

void TestSettingsStore::theLargestStoreIsOpened() {
  QFETCH(const QByteArray, value);
  QFETCH(const bool, isOpened);
  QVERIFY(write("[Global%20Settings]\nport=4023\nofOthers=" + value));
  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  QCOMPARE(record.port, isOpened ? 4023 : 5000);
}

void TestSettingsStore::aDamagedStoreIsKeptBeside_data() {
  QTest::addColumn<QByteArray>("bytes");
  QTest::addColumn<int>("port");
  QTest::newRow("a line that is none")
      << QByteArray("[Global%20Settings]\nport=4023\nhello\nofTomorrow=1\n") << 4023;
  QTest::newRow("a group without its bracket")
      << QByteArray("[Others\n[Global%20Settings]\nport=4023\n") << 4023;
  QTest::newRow("a line that is none in a part of others")
      << QByteArray("[Others]\nhello\n[Global%20Settings]\nport=4023\n") << 4023;
  QTest::newRow("no line that is one") << QByteArray("hello\n\nworld") << 5000;
}

void TestSettingsStore::aDamagedStoreIsKeptBeside() {
  QFETCH(const QByteArray, bytes);
  QFETCH(const int, port);
  const NoUmask noUmask;
  QVERIFY(write(bytes));
  {
    SettingsStore session({file()});
    ClientSettings record;
    QCOMPARE(session.load(record), WindowPlace());
    QCOMPARE(record.port, port);
    QCOMPARE(namesInFolder(), QStringList{"store.conf"});
    session.save(record, WindowPlace());
    QCOMPARE(contentsOf(file() + ".bak"), bytes);
    QCOMPARE(modeOf(file() + ".bak"), fileMode);
    QCOMPARE(storedKeys().contains("ofTomorrow"), bytes.contains("ofTomorrow"));
    session.save(record, WindowPlace());
  }
  QVERIFY(makeTheToolkitReadAgain());
  SettingsStore session({file()});
  ClientSettings record;
  QCOMPARE(session.load(record), WindowPlace());
  session.save(record, WindowPlace());
  QCOMPARE(namesInFolder(), (QStringList{"store.conf", "store.conf.bak"}));
}

void TestSettingsStore::aDamageThatOnlyTheSaveMeetsIsKeptToo() {
  const QByteArray bytes = "[Global%20Settings]\nhello\n";
  QVERIFY(write(bytes));
  save(ClientSettings(), WindowPlace());
  QCOMPARE(contentsOf(file() + ".bak"), bytes);
}

void TestSettingsStore::whatCannotBeKeptIsNotWrittenOver() {
  const QByteArray bytes = "[Global%20Settings]\nport=4023\nhello\n" + QByteArray(5000, 'x');
  QVERIFY(write(bytes));
  SettingsStore session({file()});
  ClientSettings record;
  QCOMPARE(session.load(record), WindowPlace());
  const auto saveWithLittleRoom = [&] {
    const SizeLimit fullDisk(4000);
    session.save(record, WindowPlace());
  };
  saveWithLittleRoom();
  QCOMPARE(content(), bytes);
  QCOMPARE(namesInFolder(), QStringList{"store.conf"});
  session.save(record, WindowPlace());
  QVERIFY(content().contains("port=4023"));
  QCOMPARE(contentsOf(file() + ".bak"), bytes);
}

void TestSettingsStore::aRefusedStoreInALockedFolderStands() {
  const QByteArray bytes = "port=4023\n" + QByteArray(2'000'000, 'k');
  QVERIFY(write(bytes));
  QCOMPARE(::chmod(QFile::encodeName(file()).constData(), 0666), 0);
  QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0555), 0);
  QCOMPARE(::chmod(QFile::encodeName(configFolder()).constData(), 0755), 0);
  QCOMPARE(::chmod(".", 0755), 0);
  const int result = asOrdinaryUser([] {
    save(ClientSettings(), WindowPlace());
    return true;
  });
  QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0755), 0);
  if (result == cannotTry)
    QSKIP("no ordinary user can be had here");
  QVERIFY(content() == bytes);
  QCOMPARE(namesInFolder(), QStringList{"store.conf"});
}

void TestSettingsStore::nothingIsWrittenThatTheNextLoadRefuses_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<bool>("isWritten");
  QTest::newRow("two million characters") << QString(2'000'000, u'k') << false;
  QTest::newRow("four hundred thousand of three bytes each")
      << QString(400'000, QChar(0x20ac)) << false;
  QTest::newRow("ten thousand zeros") << QString(10'000, QChar(0)) << true;
  QTest::newRow("a zero more") << QString(10'001, QChar(0)) << false;
  QTest::newRow("what looks like as many zeros") << QStringLiteral("\\0").repeated(10'001) << false;
  QTest::newRow("twenty thousand characters") << QString(20'000, u'k') << true;
}

void TestSettingsStore::nothingIsWrittenThatTheNextLoadRefuses() {
  QFETCH(const QString, text);
  QFETCH(const bool, isWritten);
  ClientSettings record;
  record.port = 4023;
  save(record, WindowPlace());
  const QByteArray before = content();
  record.port = 4024;
  record.hostName = text;
  save(record, WindowPlace());
  QCOMPARE(content() == before, !isWritten);
  QCOMPARE(namesInFolder(), QStringList{"store.conf"});
  QVERIFY(makeTheToolkitReadAgain());
  ClientSettings loaded;
  QCOMPARE(load(loaded), WindowPlace());
  QCOMPARE(loaded.port, isWritten ? 4024 : 4023);
  QCOMPARE(loaded.hostName == text, isWritten);
  // The save that failed left nothing behind that hinders the next one.
  record.hostName.clear();
  save(record, WindowPlace());
  QVERIFY(makeTheToolkitReadAgain());
  QCOMPARE(load(loaded), WindowPlace());
  QCOMPARE(loaded, record);
}

void TestSettingsStore::othersKeysCountTowardsWhatIsRefused() {
  const QByteArray start = "[Global%20Settings]\nport=4023\nofOthers=";
  const QByteArray full = start + QByteArray(qsizetype{1024} * 1024 - start.size(), 'k');
  QVERIFY(write(full));
  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  save(record, WindowPlace());
  QVERIFY(content() == full);
}

void TestSettingsStore::aDiskWithoutRoomForLongOptionsLeavesTheOldOnes() {
  save(ClientSettings(), WindowPlace());
  const QByteArray before = content();
  ClientSettings record;
  record.hostName = QString(300'000, u'k');
  {
    const SizeLimit fullDisk(200'000);
    save(record, WindowPlace());
  }
  QVERIFY(content() == before);
  save(record, WindowPlace());
  QVERIFY(content().size() > 300'000);
}

void TestSettingsStore::aPipeInPlaceOfTheStoreYieldsTheDefaults() {
  QVERIFY(QDir().mkpath(folder()));
  QCOMPARE(::mkfifo(QFile::encodeName(file()).constData(), fileMode), 0);
  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  QCOMPARE(record, ClientSettings());
  save(record, WindowPlace());
  QVERIFY(QFileInfo::exists(file()) && !QFileInfo(file()).isFile());
}

void TestSettingsStore::anUnreadableStoreYieldsTheDefaults() {
  QVERIFY(writeGroup("port=4023\n"));
  // The superuser can read any file, so this test becomes an ordinary user.
  const bool root = ::geteuid() == 0;
  const uid_t nobody = 65534;
  if (root) {
    for (const QString& path : {QDir::currentPath(), configFolder(), folder(), file()})
      QCOMPARE(::chown(QFile::encodeName(path).constData(), nobody, static_cast<gid_t>(-1)), 0);
    QCOMPARE(::seteuid(nobody), 0);
  }
  QCOMPARE(::chmod(QFile::encodeName(file()).constData(), 0), 0);
  QFile probe(file());
  const bool readable = probe.open(QIODevice::ReadOnly);
  ClientSettings record;
  const WindowPlace place = load(record);
  ClientSettings changed;
  changed.port = 11995;
  save(changed, WindowPlace());
  ClientSettings loaded;
  const WindowPlace loadedPlace = load(loaded);
  if (root)
    QCOMPARE(::seteuid(0), 0);
  QVERIFY(!readable);
  QCOMPARE(place, WindowPlace());
  QCOMPARE(record, ClientSettings());
  QCOMPARE(loadedPlace, WindowPlace());
  QCOMPARE(loaded, changed);  // the save put a readable store in its place
  QCOMPARE(contentsOf(file() + ".bak"), QByteArray("[Global%20Settings]\nport=4023\n"));
  QCOMPARE(modeOf(file()), fileMode);
}

void TestSettingsStore::aNewStoreAndItsFoldersAreTheOwnersAlone() {
  const NoUmask noUmask;
  save(ClientSettings(), WindowPlace());
  QCOMPARE(modeOf(file()), fileMode);
  QCOMPARE(modeOf(folder()), folderMode);
  QCOMPARE(modeOf(configFolder()), folderMode);
  save(ClientSettings(), WindowPlace());
  QCOMPARE(modeOf(file()), fileMode);
}

void TestSettingsStore::anExistingStoreIsNarrowedBeforeItIsWritten_data() {
  QTest::addColumn<int>("mode");
  QTest::newRow("0644") << 0644;
  QTest::newRow("0666") << 0666;
  QTest::newRow("0777") << 0777;
  QTest::newRow("0400, too narrow to be written") << 0400;
}

void TestSettingsStore::anExistingStoreIsNarrowedBeforeItIsWritten() {
  QFETCH(int, mode);
  const NoUmask noUmask;
  QVERIFY(writeGroup("port=4023\n"));
  QCOMPARE(::chmod(QFile::encodeName(file()).constData(), static_cast<mode_t>(mode)), 0);
  ClientSettings record;
  record.proxyPassword = QStringLiteral("secret");
  save(record, WindowPlace());
  QCOMPARE(modeOf(file()), fileMode);
  QVERIFY(content().contains("proxyPassword=secret"));
}

void TestSettingsStore::anExistingFolderKeepsItsPermissions() {
  QVERIFY(QDir().mkpath(folder()));
  QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0755), 0);
  save(ClientSettings(), WindowPlace());
  QCOMPARE(modeOf(folder()), 0755);
  QCOMPARE(modeOf(file()), fileMode);
}

void TestSettingsStore::aLinkedStoreStaysALink_data() {
  QTest::addColumn<bool>("targetExists");
  QTest::newRow("to a file") << true;
  QTest::newRow("to nothing yet") << false;
}

void TestSettingsStore::aLinkedStoreStaysALink() {
  QFETCH(bool, targetExists);
  const NoUmask noUmask;
  QVERIFY(QDir().mkpath(folder()));
  const QString target = configFolder() + QStringLiteral("/kept elsewhere");
  if (targetExists) {
    QFile out(target);
    QVERIFY(out.open(QIODevice::WriteOnly));
  }
  QVERIFY(QFile::link(target, file()));
  save(ClientSettings(), WindowPlace());
  QVERIFY(QFileInfo(file()).isSymLink());
  QCOMPARE(modeOf(target), fileMode);
  QVERIFY(content().contains("port=5000"));
}

void TestSettingsStore::theStoreIsNeverReadableByOthers() {
  const NoUmask noUmask;
  QVERIFY(QDir().mkpath(folder()));
  QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0755), 0);
  ClientSettings record;
  record.proxyPassword = QStringLiteral("secret");
  Watcher watcher;
  watcher.start();
  QTRY_VERIFY(watcher.looks() > 0);
  for (int i = 0; i < 200; ++i) {
    record.port = i;
    save(record, WindowPlace());
    if (i % 2 == 0)
      QVERIFY(QFile::remove(file()));
  }
  QVERIFY(watcher.looks() > 10);
  QVERIFY(!watcher.sawWideSecrets());
}

void TestSettingsStore::theLockOfAKilledClientHoldsUpNoSave_data() {
  QTest::addColumn<bool>("isNamed");
  QTest::newRow("killed before the lock said whose it is") << false;
  QTest::newRow("killed while it removed the lock of one killed before") << true;
}

void TestSettingsStore::theLockOfAKilledClientHoldsUpNoSave() {
  QFETCH(bool, isNamed);
  const QString name = file() + QStringLiteral(".lock");
  QVERIFY(write({}));
  const int result = inChild([&] {
    QLockFile lock(name);
    return lock.lock() && ::kill(::getpid(), SIGKILL) == 0 ? asWished : notAsWished;
  });
  QCOMPARE(result, -1);
  QVERIFY(QFileInfo(name).size() > 0);
  QFile halfMade(isNamed ? name + QStringLiteral(".rmlock") : name);
  QVERIFY(halfMade.open(QIODevice::WriteOnly));
  halfMade.close();

  QElapsedTimer clock;
  clock.start();
  ClientSettings record;
  record.port = 4023;
  save(record, {});
  QVERIFY2(clock.elapsed() < 10'000, qPrintable(QString::number(clock.elapsed())));
  ClientSettings found;
  (void)load(found);
  QCOMPARE(found.port, 4023);
  QVERIFY(!QFile::exists(name));
}

void TestSettingsStore::aLockThatIsTakenAwayLeavesNothingOpen() {
  const QDir open(QStringLiteral("/dev/fd"));
  if (!open.exists())
    QSKIP("here it cannot be seen what is open");
  const auto saveOverALock = [] {
    QFile lock(file() + ".lock");
    if (!lock.open(QIODevice::WriteOnly))
      qFatal("no lock can be made");
    lock.close();
    save(ClientSettings(), {});
  };
  QVERIFY(write({}));
  saveOverALock();
  const auto before = open.entryList(QDir::AllEntries | QDir::System).size();
  saveOverALock();
  QCOMPARE(open.entryList(QDir::AllEntries | QDir::System).size(), before);
}

void TestSettingsStore::theLockOfALivingClientIsRespected() {
  QVERIFY(write("old"));
  auto other = std::make_unique<QLockFile>(file() + QStringLiteral(".lock"));
  QVERIFY(other->lock());
  const pid_t saver = startChild([] {
    save(ClientSettings(), {});
    return asWished;
  });
  QTest::qSleep(200);
  QCOMPARE(content(), QByteArray("old"));
  other.reset();
  int status = -1;
  QCOMPARE(::waitpid(saver, &status, 0), saver);
  QCOMPARE(status, 0);
  QVERIFY(content().contains("hostName="));
}

void TestSettingsStore::whatWasNotReadIsLogged_data() {
  QTest::addColumn<QByteArray>("bytes");
  QTest::addColumn<QString>("said");
  QTest::newRow("a line that is none")
      << QByteArray("[Global%20Settings]\nhello\n") << "some lines of the settings make no sense";
  QTest::newRow("two megabytes") << QByteArray(2'000'000, 'k') << "the settings are the defaults";
}

void TestSettingsStore::whatWasNotReadIsLogged() {
  QFETCH(const QByteArray, bytes);
  QFETCH(const QString, said);
  QVERIFY(write(bytes));
  const LogLines log("kelmora.files");
  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  QVERIFY(!log.lines().isEmpty());
  QVERIFY2(log.lines().last().startsWith(said), qPrintable(log.lines().last()));
  QVERIFY(log.lines().last().contains(file()));
}

void TestSettingsStore::aSaveThatFailsIsLogged_data() {
  QTest::addColumn<std::function<void()>>("prepare");
  QTest::addColumn<QString>("host");
  QTest::addColumn<QString>("why");
  using Prepare = std::function<void()>;
  QTest::newRow("a folder stands there")
      << Prepare([] { QVERIFY(QDir().mkpath(file())); }) << "localhost"
      << "something else stands there and cannot be moved";
  QTest::newRow("they are too long")
      << Prepare([] {}) << QString(2'000'000, u'k') << "the next start would refuse to read them";
  QTest::newRow("a folder stands where the store's folder should be")
      << Prepare([] {
           QVERIFY(QDir().mkpath(configFolder()));
           QFile inTheWay(folder());
           QVERIFY(inTheWay.open(QIODevice::WriteOnly));
         })
      << "localhost"
      << "the toolkit cannot write there";
}

void TestSettingsStore::aSaveThatFailsIsLogged() {
  QFETCH(const std::function<void()>, prepare);
  QFETCH(const QString, host);
  QFETCH(const QString, why);
  prepare();
  ClientSettings record;
  record.hostName = host;
  record.proxyPassword = "secret";
  const LogLines log("kelmora.files");
  save(record, {});
  QVERIFY(!log.lines().isEmpty());
  QCOMPARE(log.lines().last(), "the settings were not saved to \"" + file() + "\" because " + why);
  QVERIFY(!log.lines().join('|').contains("secret"));
}

void TestSettingsStore::whatWentWellIsNotLogged() {
  const LogLines log("kelmora.files");
  ClientSettings record;
  QCOMPARE(load(record), WindowPlace());
  save(record, {});
  QCOMPARE(load(record), WindowPlace());
  QCOMPARE(log.lines(), QStringList());
}

KELMORA_VALUE_TEST_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"

#include <QElapsedTimer>
#include <QFileInfo>

#include "TableOf.h"
#include "automation/core/AutomationFiles.h"
#include "support/FileText.h"
#include "support/LogLines.h"
#include "support/OwnFolder.h"
#include "support/OwnFolderTest.h"
#include "support/ScratchMain.h"
#include "support/SizeLimit.h"

using namespace kelmora;
using namespace kelmora::automation;

using namespace Qt::StringLiterals;

using Variables = QMap<QString, QString>;

namespace {

/// The files of the tables that are written. Tests name a table by its place here.
const QStringList tableNames{u"triggers.txt"_s, u"aliases.txt"_s, u"variables.txt"_s};

/// Loads and writes tables as one run of the client does.
class Session {
 public:
  [[nodiscard]] bool load(int table) {
    return table == 0   ? files_.loadTriggers(triggers_)
           : table == 1 ? files_.loadAliases(aliases_)
                        : files_.loadVariables(variables_);
  }
  [[nodiscard]] bool write(int table) {
    return table == 0   ? files_.writeTriggers(triggers_)
           : table == 1 ? files_.writeAliases(aliases_)
                        : files_.writeVariables(variables_);
  }

 private:
  AutomationFiles files_;
  TriggerTable triggers_;
  AliasTable aliases_;
  Variables variables_;
};

}  // namespace

class TestAutomationFiles : public OwnFolderTest {
  Q_OBJECT

 private Q_SLOTS:
  void missingFilesAreCreatedEmpty();
  void theFilesStandInTheWorkingDirectory();
  void foldersInTheirPlacesFail();
  void aTableKeepsWhatStoodBeforeABadLine();
  void loadingAddsToTheTable();
  void whatWasNotReadIsKeptBesideBeforeTheFirstWrite_data();
  void whatWasNotReadIsKeptBesideBeforeTheFirstWrite();
  void aFileThatWasReadWholeIsJustReplaced_data();
  void aFileThatWasReadWholeIsJustReplaced();
  void theNextSessionKeepsItsOwn();
  void aFileReadWellAtLastIsNotKept();
  void whereNothingCanBeKeptNothingIsWritten();
  void eachFileRemembersForItself();
  void macrosAreNotKeptBeside();
  void whereALoadEndsIsLogged();

  void macroKeysAreReadByName_data();
  void macroKeysAreReadByName();
  void onlyAsciiTriggerCommandsComeBack();

  void triggersAreWrittenByteForByte();
  void aliasesAreWrittenByteForByte();
  void variablesAreWrittenByteForByte();
  void emptyTablesAreEmptyFiles();
  void aTableComesBackFromItsFile();
  void eachSaveLeavesOnlyItsFile();

  void writingMacrosEmptiesTheFileAndFails();
  void writingMacrosSucceedsWhereNothingCanBeWritten();
  void otherWritersFailWhereNothingCanBeWritten();

  void aLargeTableIsQuick();
};

void TestAutomationFiles::missingFilesAreCreatedEmpty() {
  MacroTable macros;
  TriggerTable triggers;
  AliasTable aliases;
  Variables variables;
  QVERIFY(AutomationFiles().loadMacros(macros));
  QVERIFY(AutomationFiles().loadTriggers(triggers));
  QVERIFY(AutomationFiles().loadAliases(aliases));
  QVERIFY(AutomationFiles().loadVariables(variables));
  QCOMPARE(macros.size() + triggers.size() + aliases.size() + variables.size(), 0);
  const QStringList names{u"aliases.txt"_s, u"macros.txt"_s, u"triggers.txt"_s, u"variables.txt"_s};
  QCOMPARE(QDir().entryList(QDir::Files), names);
  for (const QString& name : names)
    QCOMPARE(QFileInfo(name).size(), 0);
}

void TestAutomationFiles::theFilesStandInTheWorkingDirectory() {
  QVERIFY(QDir().mkdir(u"elsewhere"_s));
  QVERIFY(put(u"aliases.txt"_s, "\nalias \"here\"\n/alias\n"));
  QVERIFY(put(u"elsewhere/aliases.txt"_s, "\nalias \"there\"\n/alias\n"));
  QVERIFY(QDir::setCurrent(u"elsewhere"_s));
  AliasTable aliases;
  QVERIFY(AutomationFiles().loadAliases(aliases));
  QCOMPARE(aliases.entries(), QList<AliasEntry>{{.name = u"there"_s}});
  aliases = AliasTable();
  QVERIFY(AutomationFiles().writeAliases(aliases));
  QVERIFY(QDir::setCurrent(u".."_s));
  QCOMPARE(contentsOf(u"aliases.txt"_s), "\nalias \"here\"\n/alias\n");
  QCOMPARE(contentsOf(u"elsewhere/aliases.txt"_s), "");
}

void TestAutomationFiles::foldersInTheirPlacesFail() {
  for (const char* name : {"macros.txt", "triggers.txt", "aliases.txt", "variables.txt"})
    QVERIFY(QDir().mkdir(QString::fromLatin1(name)));
  MacroTable macros;
  TriggerTable triggers;
  AliasTable aliases;
  Variables variables;
  QVERIFY(!AutomationFiles().loadMacros(macros));
  QVERIFY(!AutomationFiles().loadTriggers(triggers));
  QVERIFY(!AutomationFiles().loadAliases(aliases));
  QVERIFY(!AutomationFiles().loadVariables(variables));
  QCOMPARE(macros.size() + triggers.size() + aliases.size() + variables.size(), 0);
}

void TestAutomationFiles::aTableKeepsWhatStoodBeforeABadLine() {
  QVERIFY(put(u"macros.txt"_s, "macro Key_F1\nx\n/macro\nhello\nmacro Key_F2\n/macro\n"));
  QVERIFY(put(u"triggers.txt"_s, "trigger \"a\"\nx\n/trigger\ntrigger \"\"\ny\n/trigger\n"));
  QVERIFY(put(u"aliases.txt"_s, "hello\nalias \"a\"\nx\n/alias\n"));
  QVERIFY(put(u"variables.txt"_s, "variable hp \"10\"\nvariable hp \"12\"\n"));
  MacroTable macros;
  TriggerTable triggers;
  AliasTable aliases;
  Variables variables;
  QVERIFY(!AutomationFiles().loadMacros(macros));
  QVERIFY(!AutomationFiles().loadTriggers(triggers));
  QVERIFY(!AutomationFiles().loadAliases(aliases));
  QVERIFY(!AutomationFiles().loadVariables(variables));
  QCOMPARE(macros.entries(), (QList<MacroEntry>{{.key = Qt::Key_F1, .commands = {u"x"_s}}}));
  QCOMPARE(triggers.entries(), (QList<TriggerEntry>{{.pattern = u"a"_s, .commands = {u"x"_s}}}));
  QCOMPARE(aliases.size(), 0);
  QCOMPARE(variables, (Variables{{u"hp"_s, u"10"_s}}));
}

void TestAutomationFiles::loadingAddsToTheTable() {
  QVERIFY(put(u"aliases.txt"_s, "alias \"a\"\nx\n/alias\n"));
  AliasTable aliases = tableOf<AliasTable>({{.name = u"a"_s, .commands = {u"first"_s}}});
  QVERIFY(AutomationFiles().loadAliases(aliases));
  QCOMPARE(aliases.entries(), (QList<AliasEntry>{{.name = u"a"_s, .commands = {u"first"_s}},
                                                 {.name = u"a"_s, .commands = {u"x"_s}}}));
  QVERIFY(put(u"variables.txt"_s, "variable a \"x\"\n"));
  Variables variables{{u"a"_s, u"first"_s}};
  QVERIFY(!AutomationFiles().loadVariables(variables));
  QCOMPARE(variables, (Variables{{u"a"_s, u"first"_s}}));
}

void TestAutomationFiles::whatWasNotReadIsKeptBesideBeforeTheFirstWrite_data() {
  QTest::addColumn<int>("table");
  QTest::addColumn<QByteArray>("old");
  QTest::addColumn<bool>("success");
  QTest::addColumn<QByteArray>("written");
  const QByteArray trigger = "\ntrigger \"a\"\nx\n/trigger\n";
  const QByteArray alias = "\nalias \"a\"\nx\n/alias\n";
  QTest::newRow("triggers behind a line that makes no sense")
      << 0 << trigger + "hello\ntrigger \"b\"\n/trigger\n"
      << false << trigger;
  QTest::newRow("triggers that begin with one")
      << 0 << "hello\n" + trigger << false << QByteArray("");
  QTest::newRow("a trigger without an end, which goes unsaid")
      << 0 << trigger + "trigger \"b\"\ny\n"
      << true << trigger;
  QTest::newRow("aliases behind a line that makes no sense") << 1 << alias + "alias \"\"\n/alias\n"
                                                             << false << alias;
  QTest::newRow("an alias without an end") << 1 << alias + "alias \"b\"" << true << alias;
  QTest::newRow("variables behind one that holds a quote at its start")
      << 2 << QByteArray("\nvariable a \"1\"\n\nvariable b \"\"x\"\n\nvariable c \"3\"\n") << false
      << QByteArray("\nvariable a \"1\"\n");
  QTest::newRow("a variable that comes again")
      << 2 << QByteArray("variable a \"1\"\nvariable a \"2\"\n") << false
      << QByteArray("\nvariable a \"1\"\n");
}

void TestAutomationFiles::whatWasNotReadIsKeptBesideBeforeTheFirstWrite() {
  QFETCH(int, table);
  QFETCH(QByteArray, old);
  QFETCH(bool, success);
  QFETCH(QByteArray, written);
  const QString& name = tableNames.at(table);
  QVERIFY(put(name, old));
  Session session;
  QCOMPARE(session.load(table), success);
  // Nothing is kept before the first write.
  QCOMPARE(namesHere(), QStringList{name});
  QVERIFY(session.write(table));
  QCOMPARE(contentsOf(name), written);
  QCOMPARE(contentsOf(name + u".bak"_s), old);
  QVERIFY(session.write(table));
  QCOMPARE(namesHere(), (QStringList{name, name + u".bak"_s}));
}

void TestAutomationFiles::aFileThatWasReadWholeIsJustReplaced_data() {
  QTest::addColumn<int>("table");
  QTest::addColumn<QByteArray>("old");
  QTest::newRow("triggers") << 0 << QByteArray("trigger \"a\"\n/trigger\n\n");
  QTest::newRow("aliases") << 1 << QByteArray("alias \"a\"\nx\n/alias");
  QTest::newRow("variables") << 2 << QByteArray("variable a \"1\"\r\n");
}

void TestAutomationFiles::aFileThatWasReadWholeIsJustReplaced() {
  QFETCH(int, table);
  QFETCH(QByteArray, old);
  const QString& name = tableNames.at(table);
  QVERIFY(put(name, old));
  Session session;
  QVERIFY(session.load(table));
  QVERIFY(session.write(table));
  QVERIFY(contentsOf(name) != old);
  QCOMPARE(namesHere(), QStringList{name});
}

void TestAutomationFiles::theNextSessionKeepsItsOwn() {
  for (const QByteArray& old : {"first"_ba, "second"_ba, "third"_ba}) {
    QVERIFY(put(u"variables.txt"_s, old));
    Session session;
    QVERIFY(!session.load(2));
    QVERIFY(session.write(2));
  }
  QCOMPARE(contentsOf(u"variables.txt.bak"_s), "first");
  QCOMPARE(contentsOf(u"variables.txt.bak2"_s), "second");
  QCOMPARE(contentsOf(u"variables.txt.bak3"_s), "third");
}

void TestAutomationFiles::aFileReadWellAtLastIsNotKept() {
  for (int table = 0; table < tableNames.size(); ++table) {
    const QString& name = tableNames.at(table);
    QVERIFY(put(name, "hello\n"));
    Session session;
    QVERIFY(!session.load(table));
    QVERIFY(put(name, ""));
    QVERIFY(session.load(table));
    QVERIFY(session.write(table));
  }
  QCOMPARE(namesHere(), (QStringList{u"aliases.txt"_s, u"triggers.txt"_s, u"variables.txt"_s}));
}

void TestAutomationFiles::whereNothingCanBeKeptNothingIsWritten() {
  const QByteArray old = "hello\n" + QByteArray(5000, 'x');
  for (int table = 0; table < tableNames.size(); ++table) {
    const QString& name = tableNames.at(table);
    QVERIFY(put(name, old));
    Session session;
    QVERIFY(!session.load(table));
    {
      const SizeLimit fullDisk(4000);
      QVERIFY(!session.write(table));
    }
    QCOMPARE(contentsOf(name), old);
    QVERIFY(!QFile::exists(name + u".bak"_s));
    // As soon as the disk has room again, the old file is kept and the new one written.
    QVERIFY(session.write(table));
    QCOMPARE(contentsOf(name), "");
    QCOMPARE(contentsOf(name + u".bak"_s), old);
  }
}

void TestAutomationFiles::eachFileRemembersForItself() {
  QVERIFY(put(u"aliases.txt"_s, "hello\n"));
  QVERIFY(put(u"triggers.txt"_s, "\n"));
  QVERIFY(put(u"variables.txt"_s, "\n"));
  Session session;
  for (int table = 0; table < tableNames.size(); ++table)
    QCOMPARE(session.load(table), tableNames.at(table) != u"aliases.txt");
  for (int table = 0; table < tableNames.size(); ++table)
    QVERIFY(session.write(table));
  QCOMPARE(namesHere(), (QStringList{u"aliases.txt"_s, u"aliases.txt.bak"_s, u"triggers.txt"_s,
                                     u"variables.txt"_s}));
}

void TestAutomationFiles::macrosAreNotKeptBeside() {
  QVERIFY(put(u"macros.txt"_s, "hello\n"));
  MacroTable macros;
  QVERIFY(!AutomationFiles::loadMacros(macros));
  QVERIFY(!AutomationFiles::writeMacros(macros));
  QCOMPARE(contentsOf(u"macros.txt"_s), "");
  QCOMPARE(namesHere(), QStringList{u"macros.txt"_s});
}

void TestAutomationFiles::whereALoadEndsIsLogged() {
  QVERIFY(put(u"macros.txt"_s, "macro Key_F1\n/macro\n\nsecret\n"));
  QVERIFY(put(u"triggers.txt"_s, "\ntrigger \"secret\"\nsecret\n"));
  QVERIFY(put(u"aliases.txt"_s, "\nalias \"a\"\nx\n/alias\n"));
  QVERIFY(put(u"variables.txt"_s, "secret\n"));
  const LogLines log("kelmora.files");
  MacroTable macros;
  QVERIFY(!AutomationFiles::loadMacros(macros));
  Session session;
  QVERIFY(session.load(0));
  QVERIFY(session.load(1));
  QVERIFY(!session.load(2));
  QCOMPARE(log.lines(),
           (QStringList{
               u"./macros.txt, line 4: the line makes no sense, the rest is left out"_s,
               u"./triggers.txt, line 2: the block that begins here has no end and is left out"_s,
               u"./variables.txt, line 1: the line makes no sense, the rest is left out"_s}));
}

void TestAutomationFiles::macroKeysAreReadByName_data() {
  QTest::addColumn<QByteArray>("name");
  QTest::addColumn<int>("key");
  QTest::newRow("a function key") << QByteArray("Key_F12") << int{Qt::Key_F12};
  QTest::newRow("a keypad key") << QByteArray("NUMPAD5") << int{Qt::Key_Clear};
  QTest::newRow("a character") << QByteArray("A") << 65;
  QTest::newRow("an unknown name is its first character") << QByteArray("key_f1") << 107;
  QTest::newRow("a character above ASCII is negative") << QByteArray("\xE9") << -23;
}

void TestAutomationFiles::macroKeysAreReadByName() {
  QFETCH(QByteArray, name);
  QFETCH(int, key);
  QVERIFY(put(u"macros.txt"_s, "\nmacro " + name + "\nlook\n/macro\n"));
  MacroTable macros;
  QVERIFY(AutomationFiles().loadMacros(macros));
  QCOMPARE(macros.entries(), (QList<MacroEntry>{{.key = key, .commands = {u"look"_s}}}));
}

void TestAutomationFiles::onlyAsciiTriggerCommandsComeBack() {
  const QStringList commands{u"say caf\u00E9"_s, u"say ok"_s};
  QVERIFY(AutomationFiles().writeTriggers(
      tableOf<TriggerTable>({{.pattern = u"\u00E9"_s, .commands = commands}})));
  QVERIFY(AutomationFiles().writeAliases(
      tableOf<AliasTable>({{.name = u"\u00E9"_s, .commands = commands}})));
  TriggerTable triggers;
  AliasTable aliases;
  QVERIFY(AutomationFiles().loadTriggers(triggers));
  QVERIFY(AutomationFiles().loadAliases(aliases));
  QCOMPARE(triggers.entries(),
           (QList<TriggerEntry>{
               {.pattern = u"\u00E9"_s, .commands = {u"say caf\uFFFD"_s, u"say ok"_s}}}));
  QCOMPARE(aliases.entries(), (QList<AliasEntry>{{.name = u"\u00E9"_s, .commands = commands}}));
}

void TestAutomationFiles::triggersAreWrittenByteForByte() {
  QVERIFY(AutomationFiles().writeTriggers(tableOf<TriggerTable>(
      {{.pattern = u"a"_s, .commands = {u"x"_s, u"y"_s}}, {.pattern = u"b"_s, .commands = {}}})));
  QCOMPARE(contentsOf(u"triggers.txt"_s),
           "\ntrigger \"a\"\nx\ny\n/trigger\n\ntrigger \"b\"\n/trigger\n");
}

void TestAutomationFiles::aliasesAreWrittenByteForByte() {
  QVERIFY(AutomationFiles().writeAliases(
      tableOf<AliasTable>({{.name = u"n"_s, .commands = {u"north"_s, u""_s, u"\u20AC"_s}},
                           {.name = u"n"_s, .commands = {}}})));
  QCOMPARE(contentsOf(u"aliases.txt"_s),
           "\nalias \"n\"\nnorth\n\n?\n/alias\n\nalias \"n\"\n/alias\n");
}

void TestAutomationFiles::variablesAreWrittenByteForByte() {
  QVERIFY(AutomationFiles().writeVariables({{u"hp"_s, u"10"_s}, {u"B"_s, u"two words"_s}}));
  QCOMPARE(contentsOf(u"variables.txt"_s), "\nvariable B \"two words\"\n\nvariable hp \"10\"\n");
}

void TestAutomationFiles::emptyTablesAreEmptyFiles() {
  for (const char* name : {"triggers.txt", "aliases.txt", "variables.txt"})
    QVERIFY(put(QString::fromLatin1(name), "old"));
  QVERIFY(AutomationFiles().writeTriggers(TriggerTable()));
  QVERIFY(AutomationFiles().writeAliases(AliasTable()));
  QVERIFY(AutomationFiles().writeVariables({}));
  for (const char* name : {"triggers.txt", "aliases.txt", "variables.txt"})
    QCOMPARE(contentsOf(QString::fromLatin1(name)), "");
}

void TestAutomationFiles::aTableComesBackFromItsFile() {
  const QList<TriggerEntry> triggers{
      {.pattern = u"{*} tells you: {*}"_s, .commands = {u""_s, u"a"_s}},
      {.pattern = u"100% \u00FF"_s, .commands = {}},
      {.pattern = u"100% \u00FF"_s, .commands = {u" /trigger"_s}}};
  const QList<AliasEntry> aliases{
      {.name = u"k orc"_s, .commands = {u"alias \"x\""_s, u"/aliases"_s}},
      {.name = QString(5000, u'n'), .commands = {QString(5000, u'c')}}};
  const Variables variables{{u"hp"_s, u"10"_s}, {u"_trigOut0"_s, u"\u00E9"_s}};
  QVERIFY(AutomationFiles().writeTriggers(tableOf<TriggerTable>(triggers)));
  QVERIFY(AutomationFiles().writeAliases(tableOf<AliasTable>(aliases)));
  QVERIFY(AutomationFiles().writeVariables(variables));
  TriggerTable triggersRead;
  AliasTable aliasesRead;
  Variables variablesRead;
  QVERIFY(AutomationFiles().loadTriggers(triggersRead));
  QVERIFY(AutomationFiles().loadAliases(aliasesRead));
  QVERIFY(AutomationFiles().loadVariables(variablesRead));
  QCOMPARE(triggersRead.entries(), triggers);
  QCOMPARE(aliasesRead.entries(), aliases);
  QCOMPARE(variablesRead, variables);
}

void TestAutomationFiles::eachSaveLeavesOnlyItsFile() {
  QVERIFY(AutomationFiles().writeVariables({{u"a"_s, u"1"_s}}));
  QVERIFY(AutomationFiles().writeVariables({{u"a"_s, u"2"_s}}));
  QCOMPARE(namesHere(), QStringList{u"variables.txt"_s});
}

void TestAutomationFiles::writingMacrosEmptiesTheFileAndFails() {
  MacroTable macros;
  macros.append({.key = Qt::Key_F1, .commands = {u"look"_s}});
  QVERIFY(put(u"macros.txt"_s, "\nmacro Key_F1\nlook\n/macro\n"));
  QVERIFY(!AutomationFiles().writeMacros(macros));
  QCOMPARE(contentsOf(u"macros.txt"_s), "");
  QCOMPARE(macros.size(), 1);

  QVERIFY(QFile::remove(u"macros.txt"_s));
  QVERIFY(!AutomationFiles().writeMacros(macros));
  QVERIFY(QFile::exists(u"macros.txt"_s));
  QCOMPARE(contentsOf(u"macros.txt"_s), "");
}

void TestAutomationFiles::writingMacrosSucceedsWhereNothingCanBeWritten() {
  QVERIFY(QDir().mkdir(u"macros.txt"_s));
  QVERIFY(AutomationFiles().writeMacros(MacroTable()));
  QVERIFY(QFileInfo(u"macros.txt"_s).isDir());
}

void TestAutomationFiles::otherWritersFailWhereNothingCanBeWritten() {
  for (const char* name : {"triggers.txt", "aliases.txt", "variables.txt"})
    QVERIFY(QDir().mkdir(QString::fromLatin1(name)));
  QVERIFY(!AutomationFiles().writeTriggers(TriggerTable()));
  QVERIFY(!AutomationFiles().writeAliases(AliasTable()));
  QVERIFY(!AutomationFiles().writeVariables({}));
}

void TestAutomationFiles::aLargeTableIsQuick() {
  QByteArray text;
  for (int block = 0; text.size() < 20'000'000; ++block)
    text += "\nalias \"name " + QByteArray::number(block) +
            "\"\nkill orc\nget all from corpse\n/alias\n";
  QVERIFY(put(u"aliases.txt"_s, text));
  QElapsedTimer clock;
  clock.start();
  AliasTable aliases;
  QVERIFY(AutomationFiles().loadAliases(aliases));
  QVERIFY(aliases.size() > 300'000);
  QVERIFY(AutomationFiles().writeAliases(aliases));
  const qint64 elapsed = clock.elapsed();
  QVERIFY2(contentsOf(u"aliases.txt"_s) == text, "the table did not come back");
  // It takes a second or so. If the time grew with the square of the size, it would
  // take minutes.
  QVERIFY2(elapsed < 20'000, qPrintable(QString::number(elapsed)));
}

KELMORA_TEST_MAIN(TestAutomationFiles)
#include "tst_automationfiles.moc"

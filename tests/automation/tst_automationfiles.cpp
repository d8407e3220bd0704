#include <QElapsedTimer>
#include <QFileInfo>
#include <memory>

#include "support/OwnFolder.h"
#include "automation/core/AutomationFiles.h"
#include "support/ScratchMain.h"

using namespace Qt::StringLiterals;

using Variables = QMap<QString, QString>;

namespace {

TriggerTable triggersOf(const QList<TriggerEntry>& entries) {
  TriggerTable table;
  for (const TriggerEntry& entry : entries)
    table.append(entry);
  return table;
}

AliasTable aliasesOf(const QList<AliasEntry>& entries) {
  AliasTable table;
  for (const AliasEntry& entry : entries)
    table.append(entry);
  return table;
}

}  // namespace

class TestAutomationFiles : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void missingFilesAreCreatedEmpty();
  void theFilesStandInTheWorkingDirectory();
  void foldersInTheirPlacesFail();
  void aTableKeepsWhatStoodBeforeABadLine();
  void loadingAddsToTheTable();

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

 private:
  std::unique_ptr<OwnFolder> folder_;
};

void TestAutomationFiles::init() {
  folder_ = std::make_unique<OwnFolder>();
  QVERIFY(folder_->isValid());
}

void TestAutomationFiles::cleanup() {
  folder_.reset();
}

void TestAutomationFiles::missingFilesAreCreatedEmpty() {
  MacroTable macros;
  TriggerTable triggers;
  AliasTable aliases;
  Variables variables;
  QVERIFY(automation::loadMacros(macros));
  QVERIFY(automation::loadTriggers(triggers));
  QVERIFY(automation::loadAliases(aliases));
  QVERIFY(automation::loadVariables(variables));
  QVERIFY(macros.isEmpty() && triggers.isEmpty() && aliases.isEmpty() && variables.isEmpty());
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
  QVERIFY(automation::loadAliases(aliases));
  QCOMPARE(aliases.entries(), QList<AliasEntry>{{.name = u"there"_s}});
  aliases.clear();
  QVERIFY(automation::writeAliases(aliases));
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
  QVERIFY(!automation::loadMacros(macros));
  QVERIFY(!automation::loadTriggers(triggers));
  QVERIFY(!automation::loadAliases(aliases));
  QVERIFY(!automation::loadVariables(variables));
  QVERIFY(macros.isEmpty() && triggers.isEmpty() && aliases.isEmpty() && variables.isEmpty());
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
  QVERIFY(!automation::loadMacros(macros));
  QVERIFY(!automation::loadTriggers(triggers));
  QVERIFY(!automation::loadAliases(aliases));
  QVERIFY(!automation::loadVariables(variables));
  QCOMPARE(macros.entries(), (QList<MacroEntry>{{.key = Qt::Key_F1, .commands = {u"x"_s}}}));
  QCOMPARE(triggers.entries(), (QList<TriggerEntry>{{.pattern = u"a"_s, .commands = {u"x"_s}}}));
  QVERIFY(aliases.isEmpty());
  QCOMPARE(variables, (Variables{{u"hp"_s, u"10"_s}}));
}

void TestAutomationFiles::loadingAddsToTheTable() {
  QVERIFY(put(u"aliases.txt"_s, "alias \"a\"\nx\n/alias\n"));
  AliasTable aliases = aliasesOf({{.name = u"a"_s, .commands = {u"first"_s}}});
  QVERIFY(automation::loadAliases(aliases));
  QCOMPARE(aliases.entries(), (QList<AliasEntry>{{.name = u"a"_s, .commands = {u"first"_s}},
                                                 {.name = u"a"_s, .commands = {u"x"_s}}}));
  QVERIFY(put(u"variables.txt"_s, "variable a \"x\"\n"));
  Variables variables{{u"a"_s, u"first"_s}};
  QVERIFY(!automation::loadVariables(variables));
  QCOMPARE(variables, (Variables{{u"a"_s, u"first"_s}}));
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
  QVERIFY(automation::loadMacros(macros));
  QCOMPARE(macros.entries(), (QList<MacroEntry>{{.key = key, .commands = {u"look"_s}}}));
}

void TestAutomationFiles::onlyAsciiTriggerCommandsComeBack() {
  const QStringList commands{u"say caf\u00E9"_s, u"say ok"_s};
  QVERIFY(automation::writeTriggers(triggersOf({{.pattern = u"\u00E9"_s, .commands = commands}})));
  QVERIFY(automation::writeAliases(aliasesOf({{.name = u"\u00E9"_s, .commands = commands}})));
  TriggerTable triggers;
  AliasTable aliases;
  QVERIFY(automation::loadTriggers(triggers));
  QVERIFY(automation::loadAliases(aliases));
  QCOMPARE(triggers.entries(),
           (QList<TriggerEntry>{
               {.pattern = u"\u00E9"_s, .commands = {u"say caf\uFFFD"_s, u"say ok"_s}}}));
  QCOMPARE(aliases.entries(), (QList<AliasEntry>{{.name = u"\u00E9"_s, .commands = commands}}));
}

void TestAutomationFiles::triggersAreWrittenByteForByte() {
  QVERIFY(automation::writeTriggers(triggersOf(
      {{.pattern = u"a"_s, .commands = {u"x"_s, u"y"_s}}, {.pattern = u"b"_s, .commands = {}}})));
  QCOMPARE(contentsOf(u"triggers.txt"_s),
           "\ntrigger \"a\"\nx\ny\n/trigger\n\ntrigger \"b\"\n/trigger\n");
}

void TestAutomationFiles::aliasesAreWrittenByteForByte() {
  QVERIFY(automation::writeAliases(
      aliasesOf({{.name = u"n"_s, .commands = {u"north"_s, u""_s, u"\u20AC"_s}},
                 {.name = u"n"_s, .commands = {}}})));
  QCOMPARE(contentsOf(u"aliases.txt"_s),
           "\nalias \"n\"\nnorth\n\n?\n/alias\n\nalias \"n\"\n/alias\n");
}

void TestAutomationFiles::variablesAreWrittenByteForByte() {
  QVERIFY(automation::writeVariables({{u"hp"_s, u"10"_s}, {u"B"_s, u"two words"_s}}));
  QCOMPARE(contentsOf(u"variables.txt"_s), "\nvariable B \"two words\"\n\nvariable hp \"10\"\n");
}

void TestAutomationFiles::emptyTablesAreEmptyFiles() {
  for (const char* name : {"triggers.txt", "aliases.txt", "variables.txt"})
    QVERIFY(put(QString::fromLatin1(name), "old"));
  QVERIFY(automation::writeTriggers(TriggerTable()));
  QVERIFY(automation::writeAliases(AliasTable()));
  QVERIFY(automation::writeVariables({}));
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
  QVERIFY(automation::writeTriggers(triggersOf(triggers)));
  QVERIFY(automation::writeAliases(aliasesOf(aliases)));
  QVERIFY(automation::writeVariables(variables));
  TriggerTable triggersRead;
  AliasTable aliasesRead;
  Variables variablesRead;
  QVERIFY(automation::loadTriggers(triggersRead));
  QVERIFY(automation::loadAliases(aliasesRead));
  QVERIFY(automation::loadVariables(variablesRead));
  QCOMPARE(triggersRead.entries(), triggers);
  QCOMPARE(aliasesRead.entries(), aliases);
  QCOMPARE(variablesRead, variables);
}

void TestAutomationFiles::eachSaveLeavesOnlyItsFile() {
  QVERIFY(automation::writeVariables({{u"a"_s, u"1"_s}}));
  QVERIFY(automation::writeVariables({{u"a"_s, u"2"_s}}));
  QCOMPARE(namesHere(), QStringList{u"variables.txt"_s});
}

void TestAutomationFiles::writingMacrosEmptiesTheFileAndFails() {
  MacroTable macros;
  macros.append({.key = Qt::Key_F1, .commands = {u"look"_s}});
  QVERIFY(put(u"macros.txt"_s, "\nmacro Key_F1\nlook\n/macro\n"));
  QVERIFY(!automation::writeMacros(macros));
  QCOMPARE(contentsOf(u"macros.txt"_s), "");
  QCOMPARE(macros.size(), 1);

  QVERIFY(QFile::remove(u"macros.txt"_s));
  QVERIFY(!automation::writeMacros(macros));
  QVERIFY(QFile::exists(u"macros.txt"_s));
  QCOMPARE(contentsOf(u"macros.txt"_s), "");
}

void TestAutomationFiles::writingMacrosSucceedsWhereNothingCanBeWritten() {
  QVERIFY(QDir().mkdir(u"macros.txt"_s));
  QVERIFY(automation::writeMacros(MacroTable()));
  QVERIFY(QFileInfo(u"macros.txt"_s).isDir());
}

void TestAutomationFiles::otherWritersFailWhereNothingCanBeWritten() {
  for (const char* name : {"triggers.txt", "aliases.txt", "variables.txt"})
    QVERIFY(QDir().mkdir(QString::fromLatin1(name)));
  QVERIFY(!automation::writeTriggers(TriggerTable()));
  QVERIFY(!automation::writeAliases(AliasTable()));
  QVERIFY(!automation::writeVariables({}));
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
  QVERIFY(automation::loadAliases(aliases));
  QVERIFY(aliases.size() > 300'000);
  QVERIFY(automation::writeAliases(aliases));
  const qint64 elapsed = clock.elapsed();
  QVERIFY2(contentsOf(u"aliases.txt"_s) == text, "the table did not come back");
  // A second or so; anything that grows with the square takes minutes.
  QVERIFY2(elapsed < 20'000, qPrintable(QString::number(elapsed)));
}

KELMORA_TEST_MAIN(TestAutomationFiles)
#include "tst_automationfiles.moc"

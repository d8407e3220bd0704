#include <QMap>
#include <QTest>
#include <clocale>
#include <functional>

#include "LiteralMatcher.h"
#include "RandomTriggers.h"
#include "TableOf.h"
#include "automation/core/TriggerTable.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

/// Keeps the variables, and a log of all that the triggers do.
class RecordingHost : public TriggerHost {
 public:
  void setVariable(const QString& name, const QString& value) override {
    variables[name] = value;
    log += name + "=" + value;
  }
  void runActions(const QStringList& commands) override {
    log += "run " + commands.join('|');
    if (onRun)
      onRun(commands);
  }

  QMap<QString, QString> variables = {};
  QStringList log = {};
  std::function<void(const QStringList&)> onRun = {};
};

QStringList logOf(TriggerTable& table, const QByteArray& line) {
  RecordingHost host;
  table.check(line, host);
  return host.log;
}

}  // namespace

class TestTriggerTable : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { std::setlocale(LC_ALL, "C"); }
  void anEmptyTableFiresNothing();
  void anEmptyLineFiresNothing();
  void anEmptyPatternOccursInEveryLine();
  void twoTriggersOnALineFireInTableOrder();
  void plainAndTemplateTriggersKeepTheirOrder();
  void aDuplicateFiresTwice();
  void capturesAreSetBeforeTheCommandsRun();
  void laterVariablesKeepTheValuesOfEarlierMatches();
  void aTriggerWithoutCommandsStillSetsItsVariables();
  void aTriggerFiresAgainOnTheEchoOfItsOwnLine();
  void editsTakeEffectOnTheNextLine();
  void aPositionOutsideTheTableChangesNothing();
  void aHostMayChangeTheTable_data();
  void aHostMayChangeTheTable();
  void aHostMayCheckAnotherLineMeanwhile();
  void patternsThatDifferOnlyFarBehindAreToldApart();
  void aTableTooLongForTheSearchFiresTheSame();
  void patternsOfManyLettersFireTheSame_data();
  void patternsOfManyLettersFireTheSame();
  void manyDuplicatesOnALongLineTakeNoTime();
  void randomTablesFireAsTheCLibraryHasIt();
};

void TestTriggerTable::anEmptyTableFiresNothing() {
  TriggerTable table;
  QCOMPARE(logOf(table, "any line"), QStringList());
  QCOMPARE(logOf(table, ""), QStringList());
}

void TestTriggerTable::anEmptyLineFiresNothing() {
  TriggerTable table = tableOf<TriggerTable>({{"a", {"x"}}, {"{*}", {"y"}}, {" ", {"z"}}});
  QCOMPARE(logOf(table, ""), QStringList());
}

void TestTriggerTable::anEmptyPatternOccursInEveryLine() {
  TriggerTable table = tableOf<TriggerTable>({{"a", {"1"}}, {"", {"2"}}, {"a", {"3"}}});
  QCOMPARE(logOf(table, "a"), QStringList({"run 1", "run 2", "run 3"}));
  QCOMPARE(logOf(table, "b"), QStringList("run 2"));
  QCOMPARE(logOf(table, ""), QStringList("run 2"));
}

void TestTriggerTable::twoTriggersOnALineFireInTableOrder() {
  TriggerTable table =
      tableOf<TriggerTable>({{"hungry", {"eat"}}, {"thirsty", {"drink"}}, {"You", {"look"}}});
  QCOMPARE(logOf(table, "You are thirsty and hungry."),
           QStringList({"run eat", "run drink", "run look"}));
}

void TestTriggerTable::plainAndTemplateTriggersKeepTheirOrder() {
  TriggerTable table = tableOf<TriggerTable>(
      {{"{*}", {"1"}}, {"z", {"2"}}, {"{*} a", {"3"}}, {"a", {"4"}}, {"{*} {*}", {"5"}}});
  QCOMPARE(logOf(table, "z a"),
           QStringList({"_trigOut0=z", "run 1", "run 2", "_trigOut0=z", "run 3", "run 4",
                        "_trigOut0=z", "_trigOut1=a", "run 5"}));
}

void TestTriggerTable::aDuplicateFiresTwice() {
  TriggerTable table = tableOf<TriggerTable>({{"a", {"1"}}, {"a", {"2"}}});
  QCOMPARE(logOf(table, "cat"), QStringList({"run 1", "run 2"}));
}

void TestTriggerTable::capturesAreSetBeforeTheCommandsRun() {
  TriggerTable table = tableOf<TriggerTable>({{"{*} tells you: {*}", {"say thanks", ""}}});
  QCOMPARE(logOf(table, "Bob tells you: hello there"),
           QStringList({"_trigOut0=Bob", "_trigOut1=hello", "run say thanks|"}));
}

void TestTriggerTable::laterVariablesKeepTheValuesOfEarlierMatches() {
  TriggerTable table = tableOf<TriggerTable>({{"a {*} {*} {*}", {}}, {"b {*}", {}}});
  RecordingHost host;
  table.check("a 1 2 3", host);
  table.check("b 4", host);
  const QMap<QString, QString> expected{{"_trigOut0", "4"}, {"_trigOut1", "2"}, {"_trigOut2", "3"}};
  QCOMPARE(host.variables, expected);
}

void TestTriggerTable::aTriggerWithoutCommandsStillSetsItsVariables() {
  TriggerTable table = tableOf<TriggerTable>({{"HP {*}", {}}});
  QCOMPARE(logOf(table, "HP 40"), QStringList({"_trigOut0=40", "run "}));
}

void TestTriggerTable::aTriggerFiresAgainOnTheEchoOfItsOwnLine() {
  TriggerTable table = tableOf<TriggerTable>({{"ping", {"ping"}}});
  RecordingHost host;
  int echoes = 0;
  host.onRun = [&](const QStringList& commands) {
    if (++echoes < 5)
      table.check(commands.first().toLatin1(), host);
  };
  table.check("ping", host);
  QCOMPARE(echoes, 5);
}

void TestTriggerTable::editsTakeEffectOnTheNextLine() {
  TriggerTable table = tableOf<TriggerTable>({{"a", {"1"}}});
  QCOMPARE(logOf(table, "ab"), QStringList("run 1"));
  table.append({"b", {"2"}});
  QCOMPARE(logOf(table, "ab"), QStringList({"run 1", "run 2"}));
  table.setCommands(0, {"3"});
  QCOMPARE(logOf(table, "ab"), QStringList({"run 3", "run 2"}));
  table.setPattern(0, "c");
  QCOMPARE(logOf(table, "ab"), QStringList("run 2"));
  QCOMPARE(logOf(table, "c"), QStringList("run 3"));
  table.removeAt(0);
  QCOMPARE(logOf(table, "abc"), QStringList("run 2"));
  QCOMPARE(table.entries(), QList<TriggerEntry>({{"b", {"2"}}}));
  table.removeAt(0);
  QCOMPARE(logOf(table, "abc"), QStringList());
}

void TestTriggerTable::aPositionOutsideTheTableChangesNothing() {
  TriggerTable table = tableOf<TriggerTable>({{"a", {"1"}}});
  for (const qsizetype position : {-1, 1, 1000}) {
    table.removeAt(position);
    table.setPattern(position, "b");
    table.setCommands(position, {"2"});
  }
  QCOMPARE(table.entries(), QList<TriggerEntry>({{"a", {"1"}}}));
}

void TestTriggerTable::aHostMayChangeTheTable_data() {
  QTest::addColumn<QString>("change");
  for (const char* change : {"replace", "remove", "append", "pattern", "commands"})
    QTest::addRow("the line is finished with the table as it stood: %s", change) << change;
}

void TestTriggerTable::aHostMayChangeTheTable() {
  QFETCH(const QString, change);
  TriggerTable table = tableOf<TriggerTable>({{"a", {"1"}}, {"{*}", {"2"}}, {"b", {"3"}}});
  RecordingHost host;
  host.onRun = [&](const QStringList&) {
    if (change == "replace")
      table = {};
    else if (change == "remove")
      table.removeAt(0);
    else if (change == "append")
      table.append({"a", {"new"}});
    else if (change == "pattern")
      table.setPattern(2, "none");
    else
      table.setCommands(2, {"new"});
  };
  table.check("ab", host);
  QCOMPARE(host.log, QStringList({"run 1", "_trigOut0=ab", "run 2", "run 3"}));
}

void TestTriggerTable::aHostMayCheckAnotherLineMeanwhile() {
  TriggerTable table =
      tableOf<TriggerTable>({{"outer", {"1"}}, {"{*} line", {"2"}}, {"inner", {"3"}}});
  RecordingHost host;
  host.onRun = [&](const QStringList& commands) {
    if (commands.first() == "1")
      table.check("inner line", host);
  };
  table.check("outer line", host);
  QCOMPARE(host.log,
           QStringList({"run 1", "_trigOut0=inner", "run 2", "run 3", "_trigOut0=outer", "run 2"}));
}

void TestTriggerTable::patternsThatDifferOnlyFarBehindAreToldApart() {
  TriggerTable table;
  const QString stem(1000, 'x');
  for (int number = 0; number < 1000; ++number)
    table.append(
        {stem + QString::number(number).rightJustified(4, '0'), {QString::number(number)}});
  QCOMPARE(logOf(table, stem.toLatin1() + "0417"), QStringList("run 417"));
  QCOMPARE(logOf(table, "x" + stem.toLatin1() + "0999" + stem.toLatin1() + "0000"),
           QStringList({"run 0", "run 999"}));
  QCOMPARE(logOf(table, stem.toLatin1() + "1000"), QStringList());
}

void TestTriggerTable::aTableTooLongForTheSearchFiresTheSame() {
  TriggerTable table;
  for (int number = 0; number < 50'000; ++number)
    table.append({QString("a pattern of some length that ends in the number %1.").arg(number),
                  {QString::number(number)}});
  for (const int number : {0, 30'000, 49'999})
    QCOMPARE(logOf(table, table.entries().at(number).pattern.toLatin1()),
             QStringList("run " + QString::number(number)));
  QCOMPARE(logOf(table, "a pattern of some length"), QStringList());
}

void TestTriggerTable::patternsOfManyLettersFireTheSame_data() {
  QTest::addColumn<int>("letters");
  QTest::addColumn<int>("patterns");
  QTest::newRow("few enough for a table of all steps") << 60 << 500;
  QTest::newRow("too many patterns for one") << 60 << 3000;
  QTest::newRow("all letters of Latin-1") << 256 << 100;
}

void TestTriggerTable::patternsOfManyLettersFireTheSame() {
  QFETCH(const int, letters);
  QFETCH(const int, patterns);
  RandomTriggers random(1234);
  TriggerTable table;
  for (int number = 0; number < patterns; ++number) {
    QString pattern(20, u' ');
    for (QChar& character : pattern)
      character = QChar(255 - random.below(letters));
    table.append({pattern, {QString::number(number)}});
  }
  for (int line = 0; line < 100; ++line) {
    const int number = random.below(patterns);
    QByteArray text = "before " + table.entries().at(number).pattern.toLatin1() + " behind";
    if (line % 4 == 0)
      text.remove(random.below(static_cast<int>(text.size())), 1);
    RecordingHost expected;
    literal::check(table.entries(), text, expected);
    QCOMPARE(logOf(table, text), expected.log);
    if (line % 4 != 0)
      QVERIFY(expected.log.contains("run " + QString::number(number)));
  }
}

void TestTriggerTable::manyDuplicatesOnALongLineTakeNoTime() {
  TriggerTable table;
  for (int number = 0; number < 10'000; ++number)
    table.append({"aa", {}});
  table.append({"b", {"end"}});
  RecordingHost host;
  table.check(QByteArray(1'000'000, 'a'), host);
  QCOMPARE(host.log.size(), 10'000);
}

void TestTriggerTable::randomTablesFireAsTheCLibraryHasIt() {
  constexpr int tables = 20'000;
  constexpr int linesPerTable = 3;
  RandomTriggers random(815);
  qsizetype events = 0;
  for (int round = 0; round < tables; ++round) {
    TriggerTable table;
    for (int count = random.below(61); count > 0; --count)
      table.append({random.pattern(), {QString::number(count)}});
    for (int count = 0; count < linesPerTable; ++count) {
      const QString near =
          table.size() == 0
              ? random.pattern()
              : table.entries().at(random.below(static_cast<int>(table.size()))).pattern;
      const QByteArray line = random.line(near);
      RecordingHost expected;
      literal::check(table.entries(), line, expected);
      RecordingHost host;
      table.check(line, host);
      QCOMPARE(host.log, expected.log);
      events += host.log.size();
    }
  }
  qInfo("%d lines past %d tables: %lld captures and runs", tables * linesPerTable, tables,
        static_cast<long long>(events));
  QVERIFY(events > 200'000);
}

KELMORA_TEST_MAIN(TestTriggerTable)
#include "tst_triggertable.moc"

#include <QTest>
#include <random>

#include "TableOf.h"
#include "automation/core/AliasTable.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

/// The commands of a name, found by walking along the table from its first entry.
const QStringList* walk(const AliasTable& table, const QString& name) {
  for (const AliasEntry& entry : table.entries())
    if (entry.name == name)
      return &entry.commands;
  return nullptr;
}

}  // namespace

class TestAliasTable : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void lookup_data();
  void lookup();
  void anEmptyTableKnowsNoName();
  void theCommandsKeepTheirOrderAndEmptyLines();
  void ofTwoEqualNamesTheEarlierWins();
  void removingTheEarlierLeavesTheLater();
  void aRenamedAliasAnswersToItsNewNameOnly();
  void renamingToATakenNameLetsTheEarlierWin();
  void newCommandsAreFoundAtOnce();
  void aPositionOutsideTheTableChangesNothing();
  void randomEditsFindWhatAWalkFinds();
};

void TestAliasTable::lookup_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<QString>("action");
  QTest::addColumn<bool>("found");
  QTest::newRow("the whole name is found") << "k"
                                           << "k" << true;
  QTest::newRow("text after the name makes another line") << "k"
                                                          << "k orc" << false;
  QTest::newRow("a blank before the name is not trimmed") << "k"
                                                          << " k" << false;
  QTest::newRow("a blank after the name is not trimmed") << "n"
                                                         << "n " << false;
  QTest::newRow("upper case is another name") << "k"
                                              << "K" << false;
  QTest::newRow("lower case is another name") << "Kill"
                                              << "kill" << false;
  QTest::newRow("a beginning of the name is not the name") << "kill"
                                                           << "kil" << false;
  QTest::newRow("a name may hold blanks") << "kill orc"
                                          << "kill orc" << true;
  QTest::newRow("a name may begin with a slash") << "/x"
                                                 << "/x" << true;
  QTest::newRow("a name may be a command's") << "/set"
                                             << "/set" << true;
  QTest::newRow("an empty action is no alias") << "k"
                                               << "" << false;
  QTest::newRow("a composed character is not the same as its parts")
      << QString(QChar(0xe9)) << QString("e") + QChar(0x301) << false;
  QTest::newRow("characters outside Latin-1 are kept apart")
      << QString(QChar(0x20ac)) << QString("?") << false;
}

void TestAliasTable::lookup() {
  QFETCH(const QString, name);
  QFETCH(const QString, action);
  QFETCH(const bool, found);
  const AliasTable table = tableOf<AliasTable>({{name, {"north", "look"}}});
  const QStringList* commands = table.commandsOf(action);
  QCOMPARE(commands != nullptr, found);
  if (found)
    QCOMPARE(*commands, QStringList({"north", "look"}));
}

void TestAliasTable::anEmptyTableKnowsNoName() {
  const AliasTable table;
  QCOMPARE(table.size(), 0);
  QVERIFY(!table.commandsOf("north"));
  QVERIFY(!table.commandsOf(""));
}

void TestAliasTable::theCommandsKeepTheirOrderAndEmptyLines() {
  const AliasTable table = tableOf<AliasTable>({{"n", {"north", "", "look"}}, {"nothing", {}}});
  QCOMPARE(*table.commandsOf("n"), QStringList({"north", "", "look"}));
  QVERIFY(table.commandsOf("nothing"));
  QVERIFY(table.commandsOf("nothing")->isEmpty());
}

void TestAliasTable::ofTwoEqualNamesTheEarlierWins() {
  const AliasTable table = tableOf<AliasTable>({{"x", {"first"}}, {"x", {"second"}}});
  QCOMPARE(table.size(), 2);
  QCOMPARE(*table.commandsOf("x"), QStringList("first"));
}

void TestAliasTable::removingTheEarlierLeavesTheLater() {
  AliasTable table =
      tableOf<AliasTable>({{"a", {"1"}}, {"x", {"first"}}, {"x", {"second"}}, {"b", {"2"}}});
  table.removeAt(1);
  QCOMPARE(*table.commandsOf("x"), QStringList("second"));
  QCOMPARE(*table.commandsOf("b"), QStringList("2"));
  table.removeAt(1);
  QVERIFY(!table.commandsOf("x"));
  QCOMPARE(*table.commandsOf("a"), QStringList("1"));
}

void TestAliasTable::aRenamedAliasAnswersToItsNewNameOnly() {
  AliasTable table = tableOf<AliasTable>({{"old", {"1"}}, {"old", {"2"}}});
  table.rename(0, "new");
  QCOMPARE(*table.commandsOf("new"), QStringList("1"));
  QCOMPARE(*table.commandsOf("old"), QStringList("2"));
  QCOMPARE(table.entries().at(0), (AliasEntry{"new", {"1"}}));
}

void TestAliasTable::renamingToATakenNameLetsTheEarlierWin() {
  AliasTable table = tableOf<AliasTable>({{"a", {"1"}}, {"b", {"2"}}});
  table.rename(0, "b");
  QCOMPARE(*table.commandsOf("b"), QStringList("1"));
  table.rename(0, "a");
  table.rename(1, "a");
  QCOMPARE(*table.commandsOf("a"), QStringList("1"));
  QVERIFY(!table.commandsOf("b"));
}

void TestAliasTable::newCommandsAreFoundAtOnce() {
  AliasTable table = tableOf<AliasTable>({{"a", {"1"}}});
  table.setCommands(0, {"2", "3"});
  QCOMPARE(*table.commandsOf("a"), QStringList({"2", "3"}));
}

void TestAliasTable::aPositionOutsideTheTableChangesNothing() {
  AliasTable table = tableOf<AliasTable>({{"a", {"1"}}});
  for (const qsizetype position : {-1, 1, 1000}) {
    table.removeAt(position);
    table.rename(position, "b");
    table.setCommands(position, {"2"});
  }
  QCOMPARE(table.entries(), QList<AliasEntry>({{"a", {"1"}}}));
  QVERIFY(!table.commandsOf("b"));
}

void TestAliasTable::randomEditsFindWhatAWalkFinds() {
  std::mt19937 random(20240117);
  const auto below = [&](qsizetype limit) {
    return static_cast<qsizetype>(random() % static_cast<quint32>(limit));
  };
  const auto name = [&] { return QString::number(below(12)); };
  AliasTable table;
  for (int edit = 0; edit < 20000; ++edit) {
    const qsizetype position = below(table.size() + 1);
    const qsizetype kind = below(table.size() > 30 ? 5 : 4);
    if (kind == 0)
      table.rename(position, name());
    else if (kind == 1)
      table.setCommands(position, {QString::number(edit)});
    else if (kind == 2 || kind == 3)
      table.append({name(), {QString::number(edit)}});
    if (kind > 3 || below(3) == 0)
      table.removeAt(position);
    const QString wanted = name();
    QCOMPARE(table.commandsOf(wanted), walk(table, wanted));
  }
}

KELMORA_TEST_MAIN(TestAliasTable)
#include "tst_aliastable.moc"

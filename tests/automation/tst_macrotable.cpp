#include <QTest>

#include "TableOf.h"
#include "automation/core/KeyNames.h"
#include "automation/core/MacroTable.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

class TestMacroTable : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void lookup_data();
  void lookup();
  void anEmptyTableKnowsNoKey();
  void aMacroWithoutCommandsIsStillFound();
  void ofTwoMacrosOnAKeyTheFirstWins();
  void removingTheFirstLeavesTheSecond();
  void newCommandsAreFoundAtOnce();
  void aPositionOutsideTheTableChangesNothing();
};

void TestMacroTable::lookup_data() {
  QTest::addColumn<int>("bound");
  QTest::addColumn<int>("pressed");
  QTest::addColumn<bool>("found");
  QTest::newRow("F5 is found by its key code") << keyNameToCode(u"Key_F5") << 0x01000034 << true;
  QTest::newRow("keypad 8 is the code of Up") << keyNameToCode(u"NUMPAD8") << 0x01000013 << true;
  QTest::newRow("F6 is not F5") << 0x01000034 << 0x01000035 << false;
  QTest::newRow("a letter key is bound by its code") << 65 << 65 << true;
  QTest::newRow("modifier bits make another code") << 65 << (65 | 0x02000000) << false;
  QTest::newRow("a negative key is found by itself") << -23 << -23 << true;
  QTest::newRow("a negative key is not the character's code") << -23 << 233 << false;
  QTest::newRow("key 0 is a key like others") << 0 << 0 << true;
}

void TestMacroTable::lookup() {
  QFETCH(const int, bound);
  QFETCH(const int, pressed);
  QFETCH(const bool, found);
  const MacroTable table = tableOf<MacroTable>({{bound, {"flee"}}});
  const QStringList* commands = table.commandsOf(pressed);
  QCOMPARE(commands != nullptr, found);
  if (found)
    QCOMPARE(*commands, QStringList("flee"));
}

void TestMacroTable::anEmptyTableKnowsNoKey() {
  const MacroTable table;
  QVERIFY(!table.commandsOf(0));
  QVERIFY(!table.commandsOf(65));
}

void TestMacroTable::aMacroWithoutCommandsIsStillFound() {
  const MacroTable table = tableOf<MacroTable>({{65, {}}});
  QVERIFY(table.commandsOf(65));
  QVERIFY(table.commandsOf(65)->isEmpty());
}

void TestMacroTable::ofTwoMacrosOnAKeyTheFirstWins() {
  const MacroTable table =
      tableOf<MacroTable>({{65, {"first"}}, {66, {"other"}}, {65, {"second"}}});
  QCOMPARE(table.size(), 3);
  QCOMPARE(*table.commandsOf(65), QStringList("first"));
  QCOMPARE(*table.commandsOf(66), QStringList("other"));
}

void TestMacroTable::removingTheFirstLeavesTheSecond() {
  MacroTable table = tableOf<MacroTable>({{65, {"first"}}, {66, {"other"}}, {65, {"second"}}});
  table.removeAt(0);
  QCOMPARE(*table.commandsOf(65), QStringList("second"));
  QCOMPARE(*table.commandsOf(66), QStringList("other"));
  table.removeAt(0);
  QVERIFY(!table.commandsOf(66));
}

void TestMacroTable::newCommandsAreFoundAtOnce() {
  MacroTable table = tableOf<MacroTable>({{65, {"first"}}, {65, {"second"}}});
  table.setCommands(0, {"new", ""});
  QCOMPARE(*table.commandsOf(65), QStringList({"new", ""}));
  QCOMPARE(table.entries(), QList<MacroEntry>({{65, {"new", ""}}, {65, {"second"}}}));
}

void TestMacroTable::aPositionOutsideTheTableChangesNothing() {
  MacroTable table = tableOf<MacroTable>({{65, {"first"}}});
  for (const qsizetype position : {-1, 1, 1000}) {
    table.removeAt(position);
    table.setCommands(position, {"2"});
  }
  QCOMPARE(table.entries(), QList<MacroEntry>({{65, {"first"}}}));
}

KELMORA_TEST_MAIN(TestMacroTable)
#include "tst_macrotable.moc"

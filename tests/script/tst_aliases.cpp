#include <QTest>

#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

class TestAliases : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void looksUp_data();
  void looksUp();
  void anAliasRunsNestedAndAtOnce();
  void aPauseDefersOnlyTheRestOfItsAlias();
  void aCommandOfAnAliasCanChangeTheTable();
};

void TestAliases::looksUp_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<QStringList>("log");
  using Log = QStringList;
  QTest::newRow("its exact name runs its commands") << "n" << Log{"> north", "> look"};
  QTest::newRow("a blank more is another line") << "n " << Log{"> n "};
  QTest::newRow("a blank before it is another line") << " n" << Log{">  n"};
  QTest::newRow("a word more is another line") << "n now" << Log{"> n now"};
  QTest::newRow("case counts") << "kill" << Log{"> kill"};
  QTest::newRow("its own case finds it") << "Kill" << Log{"> kill orc"};
  QTest::newRow("a phrase is a name") << "go home, now" << Log{"> recall"};
  QTest::newRow("a slash name that is no command is found plainly") << "/x" << Log{"> slash x"};
  QTest::newRow("and behind a doubled slash") << "//x" << Log{"> slash x"};
  QTest::newRow("a slash name with words is found as a whole") << "/x y" << Log{"> slash x y"};
  QTest::newRow("a command's name is not found plainly")
      << "/set" << Log{"## /set takes two arguments"};
  QTest::newRow("a command's name is found behind a doubled slash") << "//set" << Log{"> mine"};
  QTest::newRow("a command in other case may be an alias") << "/SET" << Log{"> loud"};
  QTest::newRow("a slash alone may be an alias") << "/" << Log{"> lonely"};
  QTest::newRow("two slashes find it too") << "//" << Log{"> lonely"};
  QTest::newRow("an alias without commands does nothing") << "nothing" << Log{};
  QTest::newRow("an empty command sends an empty line") << "gap" << Log{"> a", "> ", "> b"};
  QTest::newRow("the empty name may be an alias") << "" << Log{"> empty"};
  QTest::newRow("a name outside ASCII is found")
      << QStringLiteral("\u00e9\u20ac") << Log{"> accent"};
  QTest::newRow("a name outside ASCII is lost in a body")
      << QStringLiteral("/repeat 1, \u20ac") << Log{"> ?"};
}

void TestAliases::looksUp() {
  QFETCH(const QString, action);
  ScriptFixture script;
  script.aliases["n"] = QStringList{"north", "look"};
  script.aliases["Kill"] = QStringList{"kill orc"};
  script.aliases["go home, now"] = QStringList{"recall"};
  script.aliases["/x"] = QStringList{"slash x"};
  script.aliases["/x y"] = QStringList{"slash x y"};
  script.aliases["/set"] = QStringList{"mine"};
  script.aliases["/SET"] = QStringList{"loud"};
  script.aliases["/"] = QStringList{"lonely"};
  script.aliases["nothing"] = QStringList{};
  script.aliases["gap"] = QStringList{"a", "", "b"};
  script.aliases[QStringLiteral("\u00e9\u20ac")] = QStringList{"accent"};
  if (action.isEmpty())
    script.aliases[""] = QStringList{"empty"};
  QCOMPARE(script.type(action), 0);
  QTEST(script.host.log, "log");
}

void TestAliases::anAliasRunsNestedAndAtOnce() {
  ScriptFixture script;
  script.aliases["outer"] = QStringList{"o1", "inner", "o2"};
  script.aliases["inner"] = QStringList{"i1", "/set v, 1", "i2"};
  QCOMPARE(script.logOf({"a", "outer", "b"}),
           (QStringList{"> a", "> o1", "> i1", "> i2", "> o2", "> b"}));
  QCOMPARE(script.variables.value("v"), "1");
}

void TestAliases::aPauseDefersOnlyTheRestOfItsAlias() {
  ScriptFixture script;
  script.aliases["go"] = QStringList{"a1", "inner", "a2"};
  script.aliases["inner"] = QStringList{"i1", "/pause t, 30", "i2"};
  QCOMPARE(script.logOf({"go", "after"}), (QStringList{"> a1", "> i1", "> a2", "> after"}));
  QTRY_COMPARE(script.host.log.size(), 5);
  QCOMPARE(script.host.log.last(), "> i2");
}

void TestAliases::aCommandOfAnAliasCanChangeTheTable() {
  ScriptFixture script;
  script.aliases["go"] = QStringList{"first", "second", "go"};
  script.host.onSend = [&](const QString& line) {
    if (line == u"first")
      script.aliases.clear();
  };
  QCOMPARE(script.logOf({"go"}), (QStringList{"> first", "> second", "> go"}));
}

KELMORA_TEST_MAIN(TestAliases)
#include "tst_aliases.moc"

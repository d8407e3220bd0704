#include <QTest>

#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

class TestAliases : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void looksUp_data();
  void looksUp();
  void anAliasRunsNestedAndAtOnce();
  void aPauseDefersOnlyTheRestOfItsAlias();
  void aCommandOfAnAliasCanChangeTheTable();
  void anAliasThatComesBackByListsAloneIsStopped_data();
  void anAliasThatComesBackByListsAloneIsStopped();
  void anAliasThatIsOnlyCalledAgainIsNoCircle_data();
  void anAliasThatIsOnlyCalledAgainIsNoCircle();
  void anEndlessAliasTypedAloneIsStopped();
  void anEndlessAliasIsNamedOnceInAnEvent();
  void thePausesOfAnEndlessAliasStay();
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
  QCOMPARE(script.type(action), Pause());
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

using Aliases = QHash<QString, QStringList>;
using List = QStringList;

void TestAliases::anAliasThatComesBackByListsAloneIsStopped_data() {
  QTest::addColumn<Aliases>("aliases");
  QTest::addColumn<QStringList>("actions");
  QTest::addColumn<QStringList>("log");
  const auto row = [](const char* name, const Aliases& aliases, const List& actions,
                      const List& log) { QTest::newRow(name) << aliases << actions << log; };
  const QString kStopped = QStringLiteral("## Endless alias stopped: k");
  row("it sends its lines once, and the list goes on", {{"k", {"kill orc", "k"}}}, {"k", "look"},
      {"> kill orc", kStopped, "> look"});
  row("nothing behind its own call is run", {{"k", {"k", "never"}}}, {"k", "look"},
      {kStopped, "> look"});
  row("it is left by all of its calls at once", {{"k", {"k", "k", "k"}}}, {"k", "look"},
      {kStopped, "> look"});
  row("two that call each other", {{"k", {"1", "l", "never"}}, {"l", {"2", "k", "never"}}},
      {"k", "look"}, {"> 1", "> 2", kStopped, "> look"});
  row("two that call each other twice", {{"k", {"l", "l"}}, {"l", {"k", "k"}}}, {"k", "look"},
      {kStopped, "> look"});
  row("what led to the circle goes on behind it",
      {{"go", {"1", "k", "2"}}, {"k", {"l", "never"}}, {"l", {"k"}}}, {"go", "look"},
      {"> 1", kStopped, "> 2", "> look"});
  row("a doubled slash leads back too", {{"k", {"//k"}}, {"/k", {"x", "k"}}}, {"k", "look"},
      {"> x", kStopped, "> look"});
  row("a name with a slash leads back to itself", {{"/k", {"x", "/k"}}}, {"//k", "look"},
      {"> x", "## Endless alias stopped: /k", "> look"});
  row("commands on the way decide nothing",
      {{"k", {"/set a, 1", "/isequal 1, 1", "/echo x", "/cond y", "/repeat 2, z", "k"}}},
      {"k", "look"}, {"[#FFFFFF] x", "> y", "> z", "> z", kStopped, "> look"});
  row("a pause that is none decides nothing", {{"k", {"/pause t, 0", "x", "k"}}}, {"k", "look"},
      {"> x", kStopped, "> look"});
  row("a pause of another list on the way decides nothing",
      {{"k", {"wait", "k"}}, {"wait", {"/pause t, 60000", "later"}}}, {"k", "look"},
      {kStopped, "> look"});
  row("in a loop it is stopped in each round", {{"k", {"x", "k"}}}, {"/repeat 2, k", "look"},
      {"> x", kStopped, "> x", "> look"});
  row("in a condition it is stopped", {{"k", {"x", "k"}}}, {"/isequal 1, 1", "/cond k", "look"},
      {"> x", kStopped, "> look"});
  row("a circle inside a loop leaves the lists around the loop alone",
      {{"go", {"/repeat 2, k", "go on"}}, {"k", {"l"}}, {"l", {"x", "k"}}}, {"go", "look"},
      {"> x", kStopped, "> x", "> go on", "> look"});
  row("one that was under way outside a loop begins anew in it",
      {{"k", {"/cond k", "/isequal 1, 2", "x", "k"}}}, {"k", "look"}, {"> x", kStopped, "> look"});
  row("each of two is named", {{"k", {"k"}}, {"l", {"l"}}}, {"k", "l"},
      {kStopped, "## Endless alias stopped: l"});
  row("the empty name is one too", {{"", {"x", ""}}}, {"", "look"},
      {"> x", "## Endless alias stopped: ", "> look"});
}

void TestAliases::anAliasThatComesBackByListsAloneIsStopped() {
  QFETCH(const Aliases, aliases);
  QFETCH(const QStringList, actions);
  ScriptFixture script;
  script.aliases.insert(aliases);
  QTEST(script.logOf(actions), "log");
  QCOMPARE(script.logOf({"next"}), QStringList{"> next"});
}

void TestAliases::anAliasThatIsOnlyCalledAgainIsNoCircle_data() {
  QTest::addColumn<Aliases>("aliases");
  QTest::addColumn<QStringList>("log");
  const auto row = [](const char* name, const Aliases& aliases, const List& log) {
    QTest::newRow(name) << aliases << log;
  };
  row("twice in a row", {{"a", {"b", "b"}}, {"b", {"x"}}}, {"> x", "> x"});
  row("twice by different ways", {{"a", {"b", "c", "b"}}, {"c", {"b"}}, {"b", {"x"}}},
      {"> x", "> x", "> x"});
  row("again behind one that calls it in a loop", {{"a", {"b", "/repeat 2, b", "b"}}, {"b", {"x"}}},
      {"> x", "> x", "> x", "> x"});
  row("again as the last line of one that is called again",
      {{"a", {"b", "b"}}, {"b", {"c", "d"}}, {"c", {"d"}}, {"d", {"x"}}},
      {"> x", "> x", "> x", "> x"});
  row("from inside itself by a condition that ends",
      {{"a", {"/add n, 1", "/islessthan {n}, 3", "/cond a", "x"}}}, {"> x", "> x", "> x"});
  row("from inside itself by a condition in an alias of its own",
      {{"a", {"/add n, 1", "/islessthan {n}, 3", "again", "x"}}, {"again", {"/cond a"}}},
      {"> x", "> x", "> x"});
  row("under a name that only begins like its own", {{"a", {"a "}}}, {"> a "});
}

void TestAliases::anAliasThatIsOnlyCalledAgainIsNoCircle() {
  QFETCH(const Aliases, aliases);
  QFETCH(const QStringList, log);
  ScriptFixture script;
  script.variables.set("n", "0");
  script.aliases.insert(aliases);
  QCOMPARE(script.logOf({"a", "look"}), log + QStringList("> look"));
}

void TestAliases::anEndlessAliasTypedAloneIsStopped() {
  ScriptFixture script;
  script.aliases["k"] = QStringList{"kill orc", "k"};
  QCOMPARE(script.type("k"), Pause());
  QCOMPARE(script.host.log, (QStringList{"> kill orc", "## Endless alias stopped: k"}));
}

void TestAliases::anEndlessAliasIsNamedOnceInAnEvent() {
  ScriptFixture script;
  script.aliases["k"] = QStringList{"x", "k"};
  const QString stopped = QStringLiteral("## Endless alias stopped: k");
  QCOMPARE(script.logOf({"k", "k"}), (QStringList{"> x", stopped, "> x"}));
  QCOMPARE(script.logOf({"k"}), (QStringList{"> x", stopped}));
  // All runs that one read from the server starts belong to one event.
  const Losses::Event read(script.interpreter.losses());
  QCOMPARE(script.logOf({"k"}), (QStringList{"> x", stopped}));
  QCOMPARE(script.logOf({"k"}), QStringList{"> x"});
  script.host.log.clear();
  script.type("k");
  QCOMPARE(script.host.log, QStringList{"> x"});
}

void TestAliases::thePausesOfAnEndlessAliasStay() {
  ScriptFixture script;
  script.aliases["k"] = QStringList{"wait", "k"};
  script.aliases["wait"] = QStringList{"/pause t, 10", "later"};
  QCOMPARE(script.logOf({"k"}), QStringList{"## Endless alias stopped: k"});
  QTRY_COMPARE(script.host.log.last(), "> later");
  QVERIFY(script.timers.byId().isEmpty());
}

KELMORA_TEST_MAIN(TestAliases)
#include "tst_aliases.moc"

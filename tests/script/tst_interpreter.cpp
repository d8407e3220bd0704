#include <QTest>
#include <chrono>

#include "script/Interpreter.h"
#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;
using namespace std::chrono_literals;

class TestInterpreter : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void sends_data();
  void sends();
  void aListRunsInOrder();
  void anEmptyListSendsNothing();
  void anErrorDoesNotStopTheList();
  void returnsTheDelayOfAPauseAlone_data();
  void returnsTheDelayOfAPauseAlone();
  void aPauseTypedAloneMakesNoTimer();
  void aPauseInABodyLeavesItsIdButNoDelay();
  void aPauseInAnAliasLeavesTheCallerAlone();
  void aRunFromInsideAHostCallGoesFirst();
};

void TestInterpreter::sends_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<QString>("line");
  QTest::newRow("a plain line is sent as it is") << "look"
                                                 << "look";
  QTest::newRow("blanks at its ends are kept") << "  look "
                                               << "  look ";
  QTest::newRow("an empty action sends an empty line") << ""
                                                       << "";
  QTest::newRow("a doubled slash sends a single one") << "//who"
                                                      << "/who";
  QTest::newRow("only the first of three slashes is taken off") << "///who"
                                                                << "//who";
  QTest::newRow("two slashes alone send one") << "//"
                                              << "/";
  QTest::newRow("a slash alone is sent") << "/"
                                         << "/";
  QTest::newRow("a slash and a blank are sent") << "/ set"
                                                << "/ set";
  QTest::newRow("a slash word that is no command is sent with its slash") << "/wave"
                                                                          << "/wave";
  QTest::newRow("a command behind a doubled slash is sent") << "//set x,1"
                                                            << "/set x,1";
  QTest::newRow("a command in other case is sent") << "/Set x,1"
                                                   << "/Set x,1";
  QTest::newRow("a command in capitals is sent") << "/SET x,1"
                                                 << "/SET x,1";
  QTest::newRow("a command word ends at a space, not at a tab") << "/set\tx,1"
                                                                << "/set\tx,1";
  QTest::newRow("a longer word is no command") << "/sets x,1"
                                               << "/sets x,1";
  QTest::newRow("a shorter word is no command") << "/se x,1"
                                                << "/se x,1";
  QTest::newRow("a command behind a blank is sent") << " /set x,1"
                                                    << " /set x,1";
  QTest::newRow("braces are not replaced in what is sent") << "say {name}"
                                                           << "say {name}";
  QTest::newRow("braces are not replaced behind a doubled slash") << "//{name}"
                                                                  << "/{name}";
  QTest::newRow("characters outside ASCII are sent as they are")
      << QStringLiteral("say caf\u00e9 \u20ac") << QStringLiteral("say caf\u00e9 \u20ac");
}

void TestInterpreter::sends() {
  QFETCH(const QString, action);
  QFETCH(const QString, line);
  ScriptFixture script;
  script.variables.set("name", "Bob");
  QCOMPARE(script.type(action), Pause());
  QCOMPARE(script.host.log, QStringList{"> " + line});
  QCOMPARE(script.variables.size(), 1);
}

void TestInterpreter::aListRunsInOrder() {
  ScriptFixture script;
  script.aliases["n"] = QStringList{"north"};
  script.run({"n", "", "//open door"});
  QCOMPARE(script.host.log, (QStringList{"> north", "> ", "> /open door"}));
}

void TestInterpreter::anEmptyListSendsNothing() {
  ScriptFixture script;
  script.run({});
  QVERIFY(script.host.log.isEmpty());
}

void TestInterpreter::anErrorDoesNotStopTheList() {
  ScriptFixture script;
  QCOMPARE(script.logOf({"a", "/set x", "b", "/delete x", "c"}),
           (QStringList{"> a", "## /set takes two arguments", "> b",
                        "## No such variable to delete: x", "> c"}));
}

void TestInterpreter::returnsTheDelayOfAPauseAlone_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<int>("delay");
  QTest::addColumn<QString>("id");
  QTest::newRow("milliseconds") << "/pause t, 1500" << 1500 << "t";
  QTest::newRow("the id is trimmed") << "/pause  my t  , 7 " << 7 << "my t";
  QTest::newRow("the id may be blank inside a line") << "/pause \u00c2\u00a0,7" << 7 << "";
  QTest::newRow("a unit is ignored") << "/pause t, 1.5s" << 1 << "t";
  QTest::newRow("text is no delay") << "/pause t, abc" << 0 << "t";
  QTest::newRow("a negative delay is returned as such") << "/pause t, -5" << -5 << "t";
  QTest::newRow("a plus sign") << "/pause t, +5" << 5 << "t";
  QTest::newRow("variables are not replaced in the delay") << "/pause t, {n}" << 0 << "t";
  QTest::newRow("variables are not replaced in the id") << "/pause {n}, 3" << 3 << "{n}";
  QTest::newRow("the largest delay") << "/pause t, 2147483647" << 2147483647 << "t";
  QTest::newRow("without a delay it is an error and no pause") << "/pause t" << 0 << "";
}

void TestInterpreter::returnsTheDelayOfAPauseAlone() {
  QFETCH(const QString, action);
  QFETCH(const int, delay);
  ScriptFixture script;
  script.variables.set("n", "9");
  const Pause pause = script.type(action);
  QCOMPARE(pause.delay.count(), delay);
  QTEST(pause.timerId, "id");
}

void TestInterpreter::aPauseTypedAloneMakesNoTimer() {
  ScriptFixture script;
  QCOMPARE(script.type("/pause t, 100"), (Pause{100ms, "t"}));
  QVERIFY(script.timers.byId().isEmpty());
  QVERIFY(script.host.log.isEmpty());
}

void TestInterpreter::aPauseInABodyLeavesItsIdButNoDelay() {
  ScriptFixture script;
  QCOMPARE(script.type("/repeat 2, /pause t, 100"), (Pause{0ms, "t"}));
  QVERIFY(script.timers.byId().isEmpty());
}

void TestInterpreter::aPauseInAnAliasLeavesTheCallerAlone() {
  ScriptFixture script;
  script.aliases["go"] = QStringList{"a", "/pause t, 60000", "b"};
  QCOMPARE(script.type("go"), Pause());
  QCOMPARE(script.timers.byId().keys(), QStringList{"t"});
  QCOMPARE(script.host.log, QStringList{"> a"});
}

void TestInterpreter::aRunFromInsideAHostCallGoesFirst() {
  ScriptFixture script;
  script.aliases["inner"] = QStringList{"i1", "i2"};
  script.host.onSend = [&](const QString& line) {
    if (line == u"a")
      script.run({"inner", "/repeat 2, r"});
  };
  QCOMPARE(script.logOf({"/repeat 2, a", "b"}),
           (QStringList{"> a", "> i1", "> i2", "> r", "> r", "> a", "> i1", "> i2", "> r", "> r",
                        "> b"}));
}

KELMORA_TEST_MAIN(TestInterpreter)
#include "tst_interpreter.moc"

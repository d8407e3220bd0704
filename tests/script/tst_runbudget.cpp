#include <QTest>

#include "script/RunBudget.h"
#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

namespace {

/// A chain of aliases: "9" calls "8", and so on; "0" is sent.
class CountDown : public AliasLookup {
 public:
  [[nodiscard]] const QStringList* commandsOf(const QString& name) const override {
    const int left = name.toInt();
    if (left == 0)
      return nullptr;
    commands_ = QStringList{QString::number(left - 1), QStringLiteral("back")};
    return &commands_;
  }

 private:
  mutable QStringList commands_;
};

}  // namespace

class TestRunBudget : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aFiniteExpansionRunsToItsEnd_data();
  void aFiniteExpansionRunsToItsEnd();
  void anEndlessAliasEndsWithOneErrorLine_data();
  void anEndlessAliasEndsWithOneErrorLine();
  void threeFullLoopsEndWithOneErrorLine();
  void twoFullLoopsTwiceOverAreWithinTheLimit();
  void anExplodingTreeOfAliasesEndsWithOneErrorLine();
  void aMillionLinesAreWithinTheLimit();
  void longTextsCountForMore();
  void everyRunBeginsAnew();
  void aRunInsideAnotherEndsBoth();
  void aPauseBreaksAnEndlessExpansion();
};

void TestRunBudget::aFiniteExpansionRunsToItsEnd_data() {
  QTest::addColumn<int>("levels");
  QTest::addColumn<bool>("ends");
  QTest::newRow("a thousand levels") << 1000 << false;
  QTest::newRow("a hundred thousand levels") << 100'000 << false;
  QTest::newRow("as many as there may be") << int(RunBudget::nestingLimit) - 1 << false;
  QTest::newRow("one too many") << int(RunBudget::nestingLimit) << true;
}

void TestRunBudget::aFiniteExpansionRunsToItsEnd() {
  QFETCH(const int, levels);
  QFETCH(const bool, ends);
  RecordingHost host;
  VariableTable variables;
  CountDown aliases;
  Interpreter interpreter(host, variables, aliases);
  interpreter.actionQueue().runActions({QString::number(levels), "end"});
  if (ends) {
    QCOMPARE(host.log, QStringList{"## Alias nested too deeply: 1"});
  } else {
    QCOMPARE(host.log.size(), levels + 2);
    QCOMPARE(host.log.first(), "> 0");
    QCOMPARE(host.log.mid(1, levels), QStringList(levels, "> back"));
    QCOMPARE(host.log.last(), "> end");
  }
}

void TestRunBudget::anEndlessAliasEndsWithOneErrorLine_data() {
  QTest::addColumn<QStringList>("commands");
  QTest::addColumn<QString>("named");
  QTest::newRow("an alias that calls itself") << QStringList{"a"} << "a";
  QTest::newRow("an alias that calls itself and goes on") << QStringList{"a", "x", "y"} << "a";
  QTest::newRow("an alias that calls itself many times") << QStringList{"a", "a", "a"} << "a";
  QTest::newRow("aliases that call one another") << QStringList{"b", "b"} << "b";
  QTest::newRow("an alias that calls itself in a condition")
      << QStringList{"/isequal 1, 1", "/cond a"} << "a";
  QTest::newRow("an alias that calls itself in a loop") << QStringList{"/repeat 2, a"} << "a";
  QTest::newRow("an alias that calls itself behind a doubled slash") << QStringList{"//s"} << "/s";
}

void TestRunBudget::anEndlessAliasEndsWithOneErrorLine() {
  QFETCH(const QStringList, commands);
  QFETCH(const QString, named);
  ScriptFixture script;
  script.aliases["a"] = commands;
  script.aliases["b"] = QStringList{"a", "a"};
  script.aliases["/s"] = QStringList{"//s"};
  QCOMPARE(script.logOf({"a", "never", "a"}), QStringList{"## Alias nested too deeply: " + named});
  QCOMPARE(script.logOf({"next"}), QStringList{"> next"});
}

void TestRunBudget::threeFullLoopsEndWithOneErrorLine() {
  ScriptFixture script;
  script.run({"/repeat 512, /repeat 512, /repeat 512, x", "never"});
  QCOMPARE(script.host.errors(), QStringList{"## Script stopped after 527364 runs of its loops"});
  QCOMPARE(script.host.log.last(), script.host.errors().first());
  QVERIFY(script.host.sentCount > 500'000);
  QVERIFY(!script.host.log.contains("> never"));
}

void TestRunBudget::twoFullLoopsTwiceOverAreWithinTheLimit() {
  ScriptFixture script;
  script.host.keepsLines = false;
  script.run({"/repeat 512, /repeat 512, x", "/repeat 512, /repeat 512, x"});
  QCOMPARE(script.host.sentCount, 2 * 512 * 512);
  QCOMPARE(script.host.errors(), QStringList());
}

void TestRunBudget::anExplodingTreeOfAliasesEndsWithOneErrorLine() {
  ScriptFixture script;
  script.host.keepsLines = false;
  for (int level = 0; level < 60; ++level) {
    const QString next = QString::number(level + 1);
    script.aliases[QString::number(level)] = QStringList{next, next};
  }
  script.run({"0", "never"});
  QCOMPARE(script.host.errors(), QStringList{"## Script stopped after 5000000 steps"});
  QVERIFY(script.host.sentCount > 1'000'000);
}

void TestRunBudget::aMillionLinesAreWithinTheLimit() {
  ScriptFixture script;
  script.host.keepsLines = false;
  for (int level = 0; level < 20; ++level) {
    const QString next = QString::number(level + 1);
    script.aliases[QString::number(level)] = QStringList{next, next};
  }
  script.run({"0"});
  QCOMPARE(script.host.errors(), QStringList());
  QCOMPARE(script.host.sentCount, 1 << 20);
}

void TestRunBudget::longTextsCountForMore() {
  ScriptFixture script;
  script.host.keepsLines = false;
  script.variables.set("v", QString(VariableTable::maximumLength, u'x'));
  // Each of these makes a text as long as there may be.
  for (const char* body :
       {"/echo {v}", "/set w, {v}", "/isequal {v}, 1", "/variables", "/add v, 1"}) {
    script.host.log.clear();
    script.run({QStringLiteral("/repeat 512, /repeat 512, ") + QLatin1String(body)});
    QCOMPARE(script.host.errors(), QStringList{"## Script stopped after 5000000 steps"});
  }
}

void TestRunBudget::everyRunBeginsAnew() {
  ScriptFixture script;
  script.host.keepsLines = false;
  for (int round = 0; round < 3; ++round)
    script.run({"/repeat 512, /repeat 512, x"});
  QCOMPARE(script.host.sentCount, 3 * 512 * 512);
  QCOMPARE(script.host.errors(), QStringList());
}

void TestRunBudget::aRunInsideAnotherEndsBoth() {
  ScriptFixture script;
  script.aliases["a"] = QStringList{"a"};
  script.host.onSend = [&](const QString& line) {
    if (line == u"x")
      script.run({"a"});
  };
  QCOMPARE(script.logOf({"x", "never"}), (QStringList{"> x", "## Alias nested too deeply: a"}));
  QCOMPARE(script.logOf({"again"}), QStringList{"> again"});
}

void TestRunBudget::aPauseBreaksAnEndlessExpansion() {
  ScriptFixture script;
  script.aliases["tick"] = QStringList{"x", "/pause t, 1", "tick"};
  script.run({"tick"});
  QTRY_VERIFY(script.host.sentCount > 20);
  QCOMPARE(script.host.errors(), QStringList());
  script.run({"/unpause t"});
  QCOMPARE(script.host.noted("++ "), QStringList{"++ Deleted timer: t"});
}

KELMORA_TEST_MAIN(TestRunBudget)
#include "tst_runbudget.moc"

#include <QTest>
#include <limits>

#include "script/RunBudget.h"
#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

namespace {

/// A chain of aliases: "9" calls "8", which calls "7", and so on; "0" is no alias
/// and goes to the server.
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
  void countsWorkByItsSize_data();
  void countsWorkByItsSize();
  void isOverspentBehindItsLastStep();
  void actionsCost_data();
  void actionsCost();
  void aFiniteExpansionRunsToItsEnd_data();
  void aFiniteExpansionRunsToItsEnd();
  void loopsThatEndRunToTheirEnd_data();
  void loopsThatEndRunToTheirEnd();
  void anAliasThatComesBackByMoreThanListsEndsWithOneErrorLine_data();
  void anAliasThatComesBackByMoreThanListsEndsWithOneErrorLine();
  void loopsInLoopsEndWithOneErrorLine();
  void anExplodingTreeOfAliasesEndsWithOneErrorLine();
  void aMillionLinesAreWithinTheLimit();
  void longTextsCountForMore();
  void whatWasStoppedIsNamed_data();
  void whatWasStoppedIsNamed();
  void aCommandWhoseTextIsUnfinishedIsNotRun();
  void everyRunBeginsAnew();
  void aRunInsideAnotherEndsBoth();
  void aPauseBreaksAnEndlessExpansion();
};

void TestRunBudget::countsWorkByItsSize_data() {
  using Spend = void (RunBudget::*)(qint64);
  QTest::addColumn<Spend>("spend");
  QTest::addColumn<int>("amount");
  QTest::addColumn<int>("steps");
  const auto row = [](const char* name, Spend spend, int amount, int steps) {
    QTest::newRow(name) << spend << amount << steps;
  };
  row("steps", &RunBudget::spend, 7, 7);
  row("a short text is nothing", &RunBudget::spendText, 255, 0);
  row("256 characters are a step", &RunBudget::spendText, 256, 1);
  row("a long text", &RunBudget::spendText, 65'536, 256);
  row("a short number is nothing", &RunBudget::spendNumber, 64, 0);
  row("8 digits of a longer one are a step", &RunBudget::spendNumber, 72, 9);
  row("a long number", &RunBudget::spendNumber, 65'536, 8192);
  row("a line is a step", &RunBudget::spendLine, 0, 1);
  row("a line of 256 characters is two", &RunBudget::spendLine, 256, 2);
  row("a line that an argument could hold", &RunBudget::spendLine, 1024, 5);
  row("a longer line is laid out", &RunBudget::spendLine, 1028, 258);
  row("a call is a step", &RunBudget::spendCall, 0, 1);
  row("a call under 16,383 others is one still", &RunBudget::spendCall, 16'383, 1);
  row("deeper down it is two", &RunBudget::spendCall, 16'384, 2);
  row("some shared texts are nothing", &RunBudget::spendCopies, 7, 0);
  row("eight shared texts are a step", &RunBudget::spendCopies, 8, 1);
}

void TestRunBudget::countsWorkByItsSize() {
  using Spend = void (RunBudget::*)(qint64);
  QFETCH(const Spend, spend);
  QFETCH(const int, amount);
  QFETCH(const int, steps);
  RunBudget budget(100'000);
  (budget.*spend)(amount);
  QCOMPARE(budget.left(), 100'000 - steps);
}

void TestRunBudget::isOverspentBehindItsLastStep() {
  RunBudget budget(3);
  QCOMPARE(budget.limit(), 3);
  budget.spend(3);
  QVERIFY(!budget.overspent());
  QCOMPARE(budget.left(), 0);
  budget.spend(0);
  QVERIFY(!budget.overspent());
  budget.spend(1);
  QVERIFY(budget.overspent());
  budget.spend(std::numeric_limits<qint64>::max());
  QVERIFY(budget.overspent());
  {
    const RunBudget::Run run(budget);
    QCOMPARE(budget.left(), 3);
    budget.spend(2);
    const RunBudget::Run inner(budget);
    QCOMPARE(budget.left(), 1);
  }
  QCOMPARE(budget.left(), 1);
  const RunBudget::Run next(budget);
  QCOMPARE(budget.left(), 3);
}

void TestRunBudget::actionsCost_data() {
  QTest::addColumn<QStringList>("actions");
  QTest::addColumn<int>("steps");
  const auto row = [](const char* name, const QStringList& actions, int steps) {
    QTest::newRow(name) << actions << steps;
  };
  const QString text500(500, u'x');
  row("nothing costs nothing", {}, 0);
  row("a command is a step", {"/set a, b"}, 1);
  row("a command of many letters is one more, and so is its argument", {"/set a, " + text500}, 3);
  row("a line is one more", {"x"}, 2);
  row("a line of many letters is more", {text500}, 4);
  row("an alias is one more", {"alias"}, 2 + 2);
  row("an alias of no commands is two", {"empty"}, 2);
  row("a body is an action", {"/repeat 3, /set a, b"}, 1 + 3);
  row("a condition that holds nothing back is a step", {"/isequal 1, 2", "/cond x"}, 2);
  row("an error is a line", {"/set a"}, 2);
  row("an error about a name is a line", {"/add missing, 1"}, 2);
  row("an echo is a line", {"/echo x"}, 2);
  row("every variable in the list of them is a line", {"/variables"}, 1 + 1 + 4);
  row("a short number is read at once", {"/add n, 1234567"}, 1);
  row("a long number is read", {"/add number, 1"}, 1 + 10);
  row("two long numbers are compared", {"/islessthan {number}, {number}"}, 1 + 1 + 1 + 19);
  row("the names in a text are looked up", {"/set a, {s}{n}{s}{x}{s}{n}{s}{x}"}, 1 + 5);
  row("braces in a value are looked up", {"/set a, {v}"}, 1 + 3);
  row("the rest behind a pause is copied", {"wait"}, 2 + 1 + 10);
  row("calling off a pause is a command and a line", {"wait", "/unpause t"}, 13 + 2);
}

void TestRunBudget::actionsCost() {
  QFETCH(QStringList, actions);
  QFETCH(const int, steps);
  // The budget is checked before each action, so what the last action costs is only
  // noticed if another one follows.
  actions << "/set end, 1";
  const auto isEnough = [&](int limit) {
    ScriptFixture script(limit);
    script.aliases["alias"] = QStringList{"/set a, b", "/set a, b"};
    script.aliases["empty"] = QStringList{};
    script.aliases["wait"] = QStringList{"/pause t, 60000"} + QStringList(80, "x");
    script.variables.load({{"n", "1"},
                           {"s", "short"},
                           {"v", QStringLiteral("{x}").repeated(10)},
                           {"number", QString(79, u'1')}});
    script.run(actions);
    return script.variables.contains("end");
  };
  QVERIFY(isEnough(steps + 1));
  QVERIFY(!isEnough(steps));
}

void TestRunBudget::aFiniteExpansionRunsToItsEnd_data() {
  QTest::addColumn<int>("levels");
  QTest::newRow("a thousand levels") << 1000;
  QTest::newRow("a hundred thousand levels") << 100'000;
  QTest::newRow("a quarter of a million levels") << 250'000;
}

void TestRunBudget::aFiniteExpansionRunsToItsEnd() {
  QFETCH(const int, levels);
  RecordingHost host;
  VariableTable variables;
  CountDown aliases;
  Interpreter interpreter(host, variables, aliases);
  interpreter.runActions({QString::number(levels), "end"});
  QCOMPARE(host.log.size(), levels + 2);
  QCOMPARE(host.log.first(), "> 0");
  QCOMPARE(host.log.mid(1, levels), QStringList(levels, "> back"));
  QCOMPARE(host.log.last(), "> end");
}

void TestRunBudget::loopsThatEndRunToTheirEnd_data() {
  QTest::addColumn<QString>("loop");
  QTest::addColumn<QString>("count");
  QTest::newRow("a million additions") << "/repeat 100, /repeat 100, /repeat 100, /add n, 1"
                                       << "1000000";
  QTest::newRow("two full loops, one inside the other") << "/repeat 512, /repeat 512, /add n, 1"
                                                        << "262144";
  QTest::newRow("a million runs of an alias") << "/repeat 100, /repeat 100, /repeat 100, one"
                                              << "1000000";
}

void TestRunBudget::loopsThatEndRunToTheirEnd() {
  QFETCH(const QString, loop);
  ScriptFixture script;
  script.aliases["one"] = QStringList{"/add n, 1"};
  QCOMPARE(script.logOf({"/set n, 0", loop, "end"}), QStringList{"> end"});
  QTEST(script.variables.value("n"), "count");
}

void TestRunBudget::anAliasThatComesBackByMoreThanListsEndsWithOneErrorLine_data() {
  QTest::addColumn<QStringList>("commands");
  QTest::newRow("by a condition") << QStringList{"/isequal 1, 1", "/cond a"};
  QTest::newRow("by a condition with something behind it")
      << QStringList{"/isequal 1, 1", "/cond a", "x"};
  QTest::newRow("by a loop") << QStringList{"/repeat 2, a"};
  QTest::newRow("by a loop with something behind it") << QStringList{"/repeat 2, a", "x"};
  QTest::newRow("by a condition loop") << QStringList{"/isequal 1, 1", "/condloop a"};
  QTest::newRow("by another alias and its condition") << QStringList{"/isequal 1, 1", "b"};
}

void TestRunBudget::anAliasThatComesBackByMoreThanListsEndsWithOneErrorLine() {
  QFETCH(const QStringList, commands);
  ScriptFixture script;
  script.aliases["a"] = commands;
  script.aliases["b"] = QStringList{"/cond a"};
  QCOMPARE(script.logOf({"a", "never", "a"}),
           QStringList{"## Script stopped after 5000000 steps: a"});
  QCOMPARE(script.logOf({"next"}), QStringList{"> next"});
}

void TestRunBudget::loopsInLoopsEndWithOneErrorLine() {
  ScriptFixture script;
  script.run({"/set n, 0", "/repeat 512, /repeat 512, /repeat 512, /add n, 1", "never"});
  QCOMPARE(script.host.log, QStringList{"## Script stopped after 5000000 steps: "
                                        "/repeat 512, /repeat 512, /repeat 512, /add n, 1"});
  QVERIFY(script.variables.value("n").toInt() > 4'900'000);
}

void TestRunBudget::anExplodingTreeOfAliasesEndsWithOneErrorLine() {
  ScriptFixture script;
  script.host.keepsLines = false;
  for (int level = 0; level < 60; ++level) {
    const QString next = QString::number(level + 1);
    script.aliases[QString::number(level)] = QStringList{next, next};
  }
  script.run({"0", "never"});
  QCOMPARE(script.host.errors(), QStringList{"## Script stopped after 5000000 steps: 0"});
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
  // Each of these handles a text of the greatest length.
  for (const char* body :
       {"/echo {v}", "/set w, {v}", "/isequal {v}, 1", "/variables", "/add v, {v}"}) {
    script.host.log.clear();
    const QString loop = QStringLiteral("/repeat 512, /repeat 512, ") + QLatin1String(body);
    script.run({loop});
    QCOMPARE(script.host.errors().filter("Script stopped after"),
             QStringList{"## Script stopped after 5000000 steps: " + loop});
  }
}

void TestRunBudget::whatWasStoppedIsNamed_data() {
  QTest::addColumn<QStringList>("actions");
  QTest::addColumn<QString>("named");
  const QString longBody(100, u'x');
  QTest::newRow("the action of the list that has no end") << QStringList{"look", "a", "b"} << "a";
  QTest::newRow("and no action inside it") << QStringList{"go"} << "go";
  QTest::newRow("a long one is shortened")
      << QStringList{"/repeat 512, /repeat 512, " + longBody}
      << "/repeat 512, /repeat 512, " + QString(34, u'x') + "...";
  QTest::newRow("one as long as is shown is shown whole")
      << QStringList{"/repeat 512, /repeat 512, " + QString(34, u'x')}
      << "/repeat 512, /repeat 512, " + QString(34, u'x');
  QTest::newRow("of several lines the first, even an empty one") << QStringList{"\nlines"} << "";
  QTest::newRow("of several lines the first") << QStringList{"two\nlines"} << "two";
}

void TestRunBudget::whatWasStoppedIsNamed() {
  QFETCH(const QStringList, actions);
  QFETCH(const QString, named);
  ScriptFixture script(1000);
  for (const char* name : {"a", "two\nlines", "\nlines"})
    script.aliases[name] = QStringList{"/isequal 1, 1", "/repeat 2, a"};
  script.aliases["go"] = QStringList{"x", "y", "a"};
  script.run(actions);
  QCOMPARE(script.host.errors(), QStringList{"## Script stopped after 1000 steps: " + named});
  if (actions.size() > 1)
    return;
  script.host.log.clear();
  script.type(actions.first());
  QCOMPARE(script.host.errors(), QStringList{"## Script stopped after 1000 steps: " + named});
}

void TestRunBudget::aCommandWhoseTextIsUnfinishedIsNotRun() {
  ScriptFixture script(20);
  script.variables.set("v", QStringLiteral("{x}").repeated(100));
  QCOMPARE(script.logOf({"/set w, {v}"}),
           QStringList{"## Script stopped after 20 steps: /set w, {v}"});
  QVERIFY(!script.variables.contains("w"));
}

void TestRunBudget::everyRunBeginsAnew() {
  ScriptFixture script(1000);
  for (int round = 0; round < 3; ++round) {
    QCOMPARE(script.logOf({"/repeat 400, x"}), QStringList(400, "> x"));
    script.host.log.clear();
    script.type("/repeat 400, x");
    QCOMPARE(script.host.log, QStringList(400, "> x"));
  }
}

void TestRunBudget::aRunInsideAnotherEndsBoth() {
  ScriptFixture script(1000);
  script.host.onSend = [&](const QString& line) {
    if (line == u"x")
      script.run({"/repeat 512, /repeat 512, /set a, b", "never"});
  };
  QCOMPARE(script.logOf({"x", "never"}), (QStringList{"> x",
                                                      "## Script stopped after 1000 steps: "
                                                      "/repeat 512, /repeat 512, /set a, b"}));
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

#include <QElapsedTimer>
#include <QMetaMethod>
#include <QPointer>
#include <QTest>

#include "script/ActionTimer.h"
#include "script/PendingTimers.h"
#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

class TestPendingTimers : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aPauseRunsTheRestLater();
  void pausesInOneListFollowOneAnother();
  void timersFireInTheOrderOfTheirDelays();
  void aSecondPauseOfTheSameIdDropsItsList();
  void idsAreCaseSensitive();
  void aDelayThatIsNotPositiveIsNoPause_data();
  void aDelayThatIsNotPositiveIsNoPause();
  void aPauseAtTheEndOnlyTakesTheId();
  void theRestMayPauseUnderTheSameId();
  void unpauseCancels();
  void unpauseWithinTheRestFindsTheTimerGone();
  void unpauseOfAnotherTimerWithinTheRest();
  void aTimerKnowsWhatItHolds();
  void aTimerHasOneSlotAndNoSignals();
  void aTimerIsGoneAfterItFired();
  void aTimerIsStoppedBeforeItsActionsRun();
  void waitingTimersGoWithTheInterpreter();
  void aThousandTimersWaitAndGo();
};

namespace {

ActionTimer* onlyTimer(ScriptFixture& script) {
  return script.timers.byId().size() == 1 ? script.timers.byId().first() : nullptr;
}

}  // namespace

void TestPendingTimers::aPauseRunsTheRestLater() {
  ScriptFixture script;
  QElapsedTimer clock;
  clock.start();
  QCOMPARE(script.logOf({"a", "/pause t, 100", "b", "c"}), QStringList{"> a"});
  QCOMPARE(script.timers.byId().keys(), QStringList{"t"});
  QTRY_COMPARE(script.host.log, (QStringList{"> a", "> b", "> c"}));
  // The toolkit's timers may be five per cent early.
  QVERIFY2(clock.elapsed() >= 90, qPrintable(QString::number(clock.elapsed())));
  QVERIFY(script.timers.byId().isEmpty());
}

void TestPendingTimers::pausesInOneListFollowOneAnother() {
  ScriptFixture script;
  QCOMPARE(script.logOf({"a", "/pause t, 10", "b", "/pause u, 300", "c"}), QStringList{"> a"});
  QTRY_COMPARE(script.host.log, (QStringList{"> a", "> b"}));
  QCOMPARE(script.timers.byId().keys(), QStringList{"u"});
  QTRY_COMPARE(script.host.log, (QStringList{"> a", "> b", "> c"}));
}

void TestPendingTimers::timersFireInTheOrderOfTheirDelays() {
  ScriptFixture script;
  script.run({"/pause late, 120", "2"});
  script.run({"/pause early, 20", "1"});
  QTRY_COMPARE(script.host.log, (QStringList{"> 1", "> 2"}));
}

void TestPendingTimers::aSecondPauseOfTheSameIdDropsItsList() {
  ScriptFixture script;
  script.run({"/pause t, 40", "first"});
  QPointer<ActionTimer> waiting = onlyTimer(script);
  QCOMPARE(script.logOf({"x", "/pause t, 5", "lost", "lost too"}),
           (QStringList{"> x", "## Duplicate timer id: t"}));
  QCOMPARE(onlyTimer(script), waiting.data());
  QCOMPARE(waiting->interval(), 40);
  QTRY_VERIFY(script.timers.byId().isEmpty());
  QCOMPARE(script.host.log.last(), "> first");
}

void TestPendingTimers::idsAreCaseSensitive() {
  ScriptFixture script;
  QCOMPARE(script.logOf({"/pause t, 60000"}), QStringList());
  QCOMPARE(script.logOf({"/pause T, 60000"}), QStringList());
  QCOMPARE(script.timers.byId().keys(), (QStringList{"T", "t"}));
}

void TestPendingTimers::aDelayThatIsNotPositiveIsNoPause_data() {
  QTest::addColumn<QString>("pause");
  QTest::newRow("zero") << "/pause t, 0";
  QTest::newRow("negative") << "/pause t, -5";
  QTest::newRow("text") << "/pause t, soon";
  QTest::newRow("a variable, which is not replaced") << "/pause t, {n}";
}

void TestPendingTimers::aDelayThatIsNotPositiveIsNoPause() {
  QFETCH(const QString, pause);
  ScriptFixture script;
  script.variables.set("n", "1000");
  QCOMPARE(script.logOf({"a", pause, "b"}), (QStringList{"> a", "> b"}));
  QVERIFY(script.timers.byId().isEmpty());
  // Since it is no pause, it may even have the id of a waiting timer.
  script.run({"/pause t, 60000"});
  QCOMPARE(script.logOf({"a", pause, "b"}), (QStringList{"> a", "> b"}));
}

void TestPendingTimers::aPauseAtTheEndOnlyTakesTheId() {
  ScriptFixture script;
  QCOMPARE(script.logOf({"a", "/pause t, 10"}), QStringList{"> a"});
  QVERIFY(onlyTimer(script)->actions().isEmpty());
  QTRY_VERIFY(script.timers.byId().isEmpty());
  QCOMPARE(script.host.log, QStringList{"> a"});
}

void TestPendingTimers::theRestMayPauseUnderTheSameId() {
  ScriptFixture script;
  script.run({"/pause t, 10", "a", "/pause t, 10", "b"});
  QTRY_COMPARE(script.host.log, (QStringList{"> a", "> b"}));
}

void TestPendingTimers::unpauseCancels() {
  ScriptFixture script;
  script.run({"a", "/pause t, 20", "b"});
  const QPointer<ActionTimer> timer = onlyTimer(script);
  QCOMPARE(script.logOf({"/unpause t"}), QStringList{"++ Deleted timer: t"});
  QVERIFY(timer.isNull());
  QVERIFY(script.timers.byId().isEmpty());
  QCOMPARE(script.logOf({"/unpause t"}), QStringList{"## No such pending timer: t"});
  QTest::qWait(60);
  QVERIFY(!script.host.log.contains("> b"));
}

void TestPendingTimers::unpauseWithinTheRestFindsTheTimerGone() {
  ScriptFixture script;
  script.run({"/pause t, 5", "/unpause t", "on"});
  QTRY_COMPARE(script.host.log, (QStringList{"## No such pending timer: t", "> on"}));
}

void TestPendingTimers::unpauseOfAnotherTimerWithinTheRest() {
  ScriptFixture script;
  script.run({"/pause u, 60000", "never"});
  script.run({"/pause t, 5", "/unpause u", "/pause u, 5", "on"});
  QTRY_COMPARE(script.host.log, (QStringList{"++ Deleted timer: u", "> on"}));
}

void TestPendingTimers::aTimerKnowsWhatItHolds() {
  ScriptFixture script;
  script.run({"/pause  t , 60000", "b", " c"});
  ActionTimer* const timer = onlyTimer(script);
  QVERIFY(timer != nullptr);
  QCOMPARE(timer->actions(), (QStringList{"b", " c"}));
  QCOMPARE(timer->timerId(), "t");
  QCOMPARE(timer->interval(), 60000);
  QVERIFY(timer->isActive());
  QVERIFY(!timer->isSingleShot());
  QCOMPARE(timer->parent(), &script.host.timerParent());
}

void TestPendingTimers::aTimerHasOneSlotAndNoSignals() {
  const QMetaObject& meta = ActionTimer::staticMetaObject;
  QCOMPARE(meta.className(), "ActionTimer");
  QCOMPARE(meta.superClass(), &QTimer::staticMetaObject);
  QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
  const QMetaMethod method = meta.method(meta.methodOffset());
  QCOMPARE(method.methodType(), QMetaMethod::Slot);
  QCOMPARE(method.methodSignature(), "sendActions()");
}

void TestPendingTimers::aTimerIsGoneAfterItFired() {
  ScriptFixture script;
  script.run({"/pause t, 5", "b"});
  const QPointer<ActionTimer> timer = onlyTimer(script);
  QTRY_VERIFY(timer.isNull());
  QTest::qWait(30);
  QCOMPARE(script.host.log, QStringList{"> b"});
}

void TestPendingTimers::aTimerIsStoppedBeforeItsActionsRun() {
  ScriptFixture script;
  script.run({"/pause t, 5", "b"});
  const ActionTimer* const timer = onlyTimer(script);
  QVERIFY(timer->isActive());
  bool active = true;
  script.host.onSend = [&](const QString&) { active = timer->isActive(); };
  QTRY_COMPARE(script.host.log, QStringList{"> b"});
  QVERIFY(!active);
}

void TestPendingTimers::waitingTimersGoWithTheInterpreter() {
  RecordingHost host;
  VariableTable variables;
  AliasMap aliases;
  {
    Interpreter interpreter(host, variables, aliases);
    interpreter.runActions({"/pause t, 1", "b"});
    interpreter.runActions({"/pause u, 1", "c"});
    QCOMPARE(host.timerParent().children().size(), 2);
  }
  QVERIFY(host.timerParent().children().isEmpty());
  QTest::qWait(20);
  QVERIFY(host.log.isEmpty());
}

void TestPendingTimers::aThousandTimersWaitAndGo() {
  ScriptFixture script;
  for (int number = 0; number < 1000; ++number)
    script.run(
        {QStringLiteral("/pause t%1, %2").arg(number).arg(number % 2 == 0 ? 20 : 60000), "x"});
  QCOMPARE(script.timers.byId().size(), 1000);
  QTRY_COMPARE(script.host.sentCount, 500);
  for (int number = 1; number < 1000; number += 2)
    script.run({QStringLiteral("/unpause t%1").arg(number)});
  QVERIFY(script.timers.byId().isEmpty());
  QCOMPARE(script.host.errors(), QStringList());
}

KELMORA_TEST_MAIN(TestPendingTimers)
#include "tst_pendingtimers.moc"

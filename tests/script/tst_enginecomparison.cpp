#include <QRandomGenerator>
#include <QTest>

#include "script/ActionTimer.h"
#include "script/PlainScript.h"
#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

namespace {

/// Writes small random scripts of aliases, conditions, loops and pauses.
class ScriptWriter {
 public:
  explicit ScriptWriter(quint32 seed) : random_(seed) {}

  QStringList list(int longest) {
    QStringList actions;
    for (int left = random_.bounded(longest + 1); left > 0; --left)
      actions << action(3);
    return actions;
  }

  QString oneOf(const QStringList& texts) { return texts[random_.bounded(int(texts.size()))]; }
  bool chance(int oneIn) { return random_.bounded(oneIn) == 0; }

 private:
  QString name() { return oneOf({"a", "b", "c", "{a}"}); }
  QString value() {
    return oneOf({"0", "1", "2", "3", "-1", "0.5", "2147483647", "x", "{a}", "{b}", "{a}{c}", " 4 ",
                  "", "1e39", "nan", "\u00e9"});
  }
  QString comparison() {
    return oneOf({"/isequal", "/isnotequal", "/islessthan", "/isgreaterthan", "/islessthanorequal",
                  "/isgreaterthanorequal"}) +
           " " + value() + "," + value();
  }
  QString arithmetic() {
    return oneOf({"/add", "/subtract", "/multiply", "/divide"}) + " " + name() + ", " + value();
  }

  QString action(int depth) {
    switch (random_.bounded(depth > 0 ? 18 : 11)) {
      case 0:
        return oneOf({"look", "//who", "/wave", "/", "", " p", "/Set a,1", "//cond x"});
      case 1:
        return "/set " + name() + "," + value();
      case 2:
        return comparison();
      case 3:
        return arithmetic();
      case 4:
        return "/echo " + oneOf({"", "{a} {b}", "{c}, 00FF00", "x,", ",x"});
      case 5:
        return "/pause " + oneOf({"t", "u", " t ", "v"}) + oneOf({",60000", ", 0", ",x", "", ",5"});
      case 6:
        return "/unpause " + oneOf({"t", "u", "v ", ""});
      case 7:
        return oneOf({"/delete a", "/delete b ", "/delete", "/variables", "/cond", "/repeat 2"});
      case 8:
      case 9:
      case 10:
        return oneOf({"p", "q", "r", "s", "/w"});
      case 11:
      case 12:
      case 13:
        return "/cond " + action(depth - 1);
      case 14:
        return "/condloop " + action(depth - 1);
      default:
        return "/repeat " + oneOf({"1", "2", "3", "{a}", "2.9", "0", "x"}) + "," +
               oneOf({"", " "}) + action(depth - 1);
    }
  }

  QRandomGenerator random_;
};

struct Waiting {
  QMap<QString, QStringList> actions;
  QMap<QString, int> delays;
};

Waiting waitingOf(const ScriptFixture& script) {
  Waiting waiting;
  for (const ActionTimer* timer : script.timers.byId()) {
    waiting.actions[timer->timerId()] = timer->actions();
    waiting.delays[timer->timerId()] = timer->interval();
  }
  return waiting;
}

}  // namespace

class TestEngineComparison : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void doesWhatPlainRecursionDoes();
};

void TestEngineComparison::doesWhatPlainRecursionDoes() {
  constexpr int wanted = 20'000;
  int compared = 0;
  int withLoops = 0;
  int withTimers = 0;
  int withCircles = 0;
  for (quint32 seed = 1; compared < wanted; ++seed) {
    QVERIFY2(seed < 20 * wanted, "too many scripts were given up");
    ScriptWriter writer(seed);
    PlainScript plain;
    ScriptFixture script;
    for (const char* name : {"p", "q", "r", "s", "/w"})
      plain.aliases[name] = writer.list(5);
    script.aliases.insert(plain.aliases);
    const QStringList actions = writer.list(14);
    // The test fires the timers itself, in random order.
    QStringList fired;
    plain.run(actions);
    for (int round = 0; round < 4 && !plain.gaveUp && !plain.timers.isEmpty(); ++round) {
      fired << writer.oneOf(plain.timers.keys());
      plain.fire(fired.last());
    }
    if (plain.gaveUp)
      continue;
    ++compared;
    withLoops += plain.log.size() > 20 ? 1 : 0;
    withTimers += fired.isEmpty() ? 0 : 1;
    withCircles += plain.log.filter("## Endless alias stopped: ").isEmpty() ? 0 : 1;

    script.run(actions);
    for (const QString& id : fired) {
      ActionTimer* const timer = script.timers.byId().value(id);
      QVERIFY2(timer != nullptr, qPrintable(QStringLiteral("seed %1").arg(seed)));
      timer->sendActions();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (script.host.log != plain.log)
      qWarning() << "seed" << seed << actions << plain.aliases;
    QCOMPARE(script.host.log, plain.log);
    QCOMPARE(script.variables.entries(), plain.variables);
    const Waiting waiting = waitingOf(script);
    QCOMPARE(waiting.actions, plain.timers);
    for (auto timer = waiting.delays.cbegin(); timer != waiting.delays.cend(); ++timer)
      QCOMPARE(*timer, plain.delays[timer.key()]);
  }
  // Enough of the scripts did something that is worth comparing.
  QVERIFY2(withLoops > wanted / 50, qPrintable(QString::number(withLoops)));
  QVERIFY2(withTimers > wanted / 20, qPrintable(QString::number(withTimers)));
  QVERIFY2(withCircles > wanted / 20, qPrintable(QString::number(withCircles)));
}

KELMORA_TEST_MAIN(TestEngineComparison)
#include "tst_enginecomparison.moc"

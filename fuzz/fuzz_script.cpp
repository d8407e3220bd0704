#include <QCoreApplication>

#include "FuzzTarget.h"
#include "Surroundings.h"
#include "script/ActionTimer.h"
#include "script/PlainScript.h"
#include "script/ScriptFixture.h"

using namespace kelmora;
using namespace kelmora::script;

namespace {

/// Few steps, so that a run ends soon, but enough that the plain interpreter mostly
/// gives up first.
constexpr qint64 mostSteps = 6000;
constexpr int deepestAnswer = 3;

struct Step {
  enum class Kind { List, Line, Timer };
  Kind kind;
  QStringList texts = {};  ///< the list; the one line; the one timer id
};

struct Scenario {
  QHash<QString, QStringList> aliases = {};
  QList<Step> steps = {};
};

Scenario scenarioOf(const QString& text) {
  Scenario scenario;
  scenario.steps.append(Step{Step::Kind::List});
  QStringList* list = &scenario.steps.back().texts;
  for (QString line : text.split(u'\n')) {
    // Lines are divided at line breaks, so this byte stands for one in an action.
    line.replace(QChar(1), u'\n');
    const QString rest = line.mid(1);
    if (line.startsWith(u'=')) {
      list = &scenario.aliases[rest];
    } else if (line.startsWith(u'>')) {
      scenario.steps.append(Step{Step::Kind::List});
      list = &scenario.steps.back().texts;
    } else if (line.startsWith(u'!')) {
      scenario.steps.append({Step::Kind::Line, {rest}});
      list = nullptr;
    } else if (line.startsWith(u'@')) {
      scenario.steps.append({Step::Kind::Timer, {rest}});
      list = nullptr;
    } else if (list) {
      list->append(line);
    }
  }
  return scenario;
}

/// Runs the same steps in the interpreter and in the plain one.
class PlainComparison {
 public:
  explicit PlainComparison(const Scenario& scenario) {
    plain_.aliases = scenario.aliases;
    engine_.aliases.insert(scenario.aliases);
    engine_.host.onSend = [this](const QString& line) { answer(line); };
  }

  /// Returns false if the two can no longer be compared.
  bool take(const Step& step) {
    const qsizetype before = stops();
    switch (step.kind) {
      case Step::Kind::List:
        engine_.run(step.texts);
        plain_.run(step.texts);
        break;
      case Step::Kind::Line:
        engine_.type(step.texts.first());
        plain_.type(step.texts.first());
        break;
      case Step::Kind::Timer:
        fire(step.texts.first());
    }
    const qsizetype stopped = stops() - before;
    fuzz::require(stopped <= 1, "a run that is stopped says so once");
    requireBounds();
    if (plain_.gaveUp || stopped > 0 || answered_)
      return false;
    requireSame();
    return true;
  }

  void end() {
    for (const QString& id : engine_.timers.byId().keys())
      engine_.timers.unpause(id);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    fuzz::require(engine_.host.timerParent().children().isEmpty(), "no timer is left over");
  }

  [[nodiscard]] QString firstTimer() const { return plain_.timers.firstKey(); }
  [[nodiscard]] bool isWaiting() const { return !plain_.timers.isEmpty(); }

 private:
  /// A line that begins with "~" starts another run before sending it returns, as a
  /// host may do.
  void answer(const QString& line) {
    if (!line.startsWith(u'~') || answers_ == deepestAnswer)
      return;
    answered_ = true;
    ++answers_;
    engine_.run({line.mid(1), line.mid(2)});
    --answers_;
  }

  void fire(const QString& id) {
    ActionTimer* const timer = engine_.timers.byId().value(id);
    fuzz::require((timer != nullptr) == plain_.timers.contains(id), "the same timers wait");
    if (!timer)
      return;
    timer->sendActions();
    plain_.fire(id);
  }

  [[nodiscard]] qsizetype stops() const {
    return engine_.host.noted(QStringLiteral("## Script stopped after ")).size();
  }

  void requireBounds() const {
    for (const QString& value : engine_.variables.entries())
      fuzz::require(value.size() <= VariableTable::maximumLength, "a value keeps its bound");
  }

  void requireSame() const {
    fuzz::require(engine_.host.log == plain_.log, "the interpreter does what the plain one does");
    fuzz::require(engine_.variables.entries() == plain_.variables, "the variables are the same");
    const auto& waiting = engine_.timers.byId();
    fuzz::require(waiting.keys() == plain_.timers.keys(), "the waiting timers are the same");
    for (const ActionTimer* timer : waiting) {
      fuzz::require(timer->actions() == plain_.timers[timer->timerId()],
                    "a timer holds the same rest");
      fuzz::require(timer->interval() == plain_.delays[timer->timerId()], "a timer waits as long");
    }
  }

  PlainScript plain_;
  ScriptFixture engine_{mostSteps};
  int answers_ = 0;
  bool answered_ = false;
};

}  // namespace

/// The input is UTF-8 text, the first lines of which are a list of actions to run.
/// A line that begins with "=" names an alias, and the lines after it are its
/// commands. ">" begins another list to run. "!" is a line typed by itself. "@"
/// lets the timer of that id fire.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Surroundings<QCoreApplication>::provide();
  const Scenario scenario = scenarioOf(QString::fromUtf8(fuzz::bytesOf(data, size)));
  PlainComparison comparison(scenario);
  bool goesOn = true;
  for (qsizetype step = 0; step < scenario.steps.size() && goesOn; ++step)
    goesOn = comparison.take(scenario.steps.at(step));
  for (int round = 0; round < 4 && goesOn && comparison.isWaiting(); ++round)
    goesOn = comparison.take({Step::Kind::Timer, {comparison.firstTimer()}});
  comparison.end();
  return 0;
}

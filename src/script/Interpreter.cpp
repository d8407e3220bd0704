#include "script/Interpreter.h"

#include <utility>
#include <vector>

#include "script/AliasLookup.h"
#include "script/ScriptHost.h"

namespace {

struct List {
  QStringList actions;
  qsizetype next = 0;
};
struct ConditionLoop {
  QString body;
  int runsLeft;
};

}  // namespace

/// Where an action comes from, which decides what a pause means.
enum class Interpreter::Place { Alone, List, Body };

/// What is going on, innermost last.
struct Interpreter::Stack {
  QTextStream& stream;
  /// Takes the id of a pause that stands outside every list.
  QString& timerId;
  std::vector<std::variant<List, Once, Repeat, ConditionLoop>> frames = {};
  /// How many of the frames are lists.
  qsizetype lists = 0;

  void pushList(const QStringList& actions) {
    frames.emplace_back(List{actions});
    ++lists;
  }
  void popList() {
    frames.pop_back();
    --lists;
  }
};

struct Interpreter::Next {
  QString action;
  Place place;
};

Interpreter::Interpreter(ScriptHost& host, VariableTable& variables, const AliasLookup& aliases,
                         const RunBudget::Limits& limits)
    : host_(host),
      aliases_(aliases),
      budget_(limits),
      queue_(host, *this),
      commands_(host, variables, queue_, budget_) {}

int Interpreter::interpretAction(QString action, QTextStream& stream, QString& timerId) {
  const RunBudget::Run run(budget_);
  Stack stack{stream, timerId};
  const int delay = perform(stack, {std::move(action), Place::Alone});
  finish(stack);
  return delay;
}

void Interpreter::runList(const QStringList& actions, QTextStream& stream) {
  const RunBudget::Run run(budget_);
  QString unused;
  Stack stack{stream, unused};
  stack.pushList(actions);
  finish(stack);
}

void Interpreter::finish(Stack& stack) {
  while (!stack.frames.empty() && !budget_.ended())
    if (std::optional<Next> next = nextOf(stack))
      perform(stack, *std::move(next));
}

std::optional<Interpreter::Next> Interpreter::nextOf(Stack& stack) {
  if (auto* const list = std::get_if<List>(&stack.frames.back())) {
    if (list->next < list->actions.size())
      return Next{list->actions.at(list->next++), Place::List};
    stack.popList();
    return std::nullopt;
  }
  std::optional<QString> body = bodyOf(stack);
  if (!body)
    return std::nullopt;
  return Next{*std::move(body), Place::Body};
}

std::optional<QString> Interpreter::bodyOf(Stack& stack) {
  auto& frame = stack.frames.back();
  QString body;
  if (auto* const once = std::get_if<Once>(&frame)) {
    body = std::move(once->body);
    stack.frames.pop_back();
    return body;
  }
  if (auto* const loop = std::get_if<Repeat>(&frame)) {
    body = loop->body;
    if (--loop->runs == 0)
      stack.frames.pop_back();
  } else {
    auto& condition = std::get<ConditionLoop>(frame);
    if (!commands_.conditionFlag() || condition.runsLeft == 0) {
      stack.frames.pop_back();
      if (commands_.conditionFlag())
        host_.printError(QStringLiteral("/condloop has reached maximum evaluation"));
      return std::nullopt;
    }
    --condition.runsLeft;
    body = condition.body;
  }
  if (budget_.spendLoopRun())
    return body;
  endRun(
      QStringLiteral("Script stopped after %1 runs of its loops").arg(budget_.limits().loopRuns));
  return std::nullopt;
}

int Interpreter::perform(Stack& stack, const Next& next) {
  budget_.spend(1);
  budget_.spendText(next.action.size());
  if (endsForSteps())
    return 0;
  if (next.action.startsWith(u'/') && !next.action.startsWith(u"//")) {
    const std::optional<Sequel> sequel = commands_.run(next.action);
    if (endsForSteps())
      return 0;
    if (sequel)
      return follow(stack, *sequel, next.place);
  }
  const bool doubled = next.action.startsWith(u"//");
  callOrSend(stack, doubled ? next.action.sliced(1) : next.action);
  return 0;
}

int Interpreter::follow(Stack& stack, const Sequel& sequel, Place place) {
  if (const auto* const pause = std::get_if<Pause>(&sequel)) {
    if (stack.lists == 0)
      stack.timerId = pause->timerId;
    if (place == Place::Alone)
      return pause->delay;
    if (place == Place::List && pause->delay > 0)
      park(stack, *pause);
  } else if (const auto* const once = std::get_if<Once>(&sequel)) {
    stack.frames.emplace_back(*once);
  } else if (const auto* const repeat = std::get_if<Repeat>(&sequel)) {
    if (repeat->runs > 0)
      stack.frames.emplace_back(*repeat);
  } else if (const auto* const loop = std::get_if<CondLoop>(&sequel)) {
    stack.frames.emplace_back(ConditionLoop{loop->body, Commands::condLoopLimit});
  }
  return 0;
}

void Interpreter::park(Stack& stack, const Pause& pause) {
  // The pause was in the innermost list, which ends here.
  const List& list = std::get<List>(stack.frames.back());
  const QStringList rest = list.actions.mid(list.next);
  stack.popList();
  queue_.park(pause.timerId, pause.delay, rest);
}

void Interpreter::callOrSend(Stack& stack, const QString& text) {
  const QStringList* const commands = aliases_.commandsOf(text);
  if (commands == nullptr)
    host_.sendLine(stack.stream, text);
  else if (static_cast<qsizetype>(stack.frames.size()) < budget_.limits().nesting)
    stack.pushList(*commands);
  else
    endRun(QStringLiteral("Alias nested too deeply: ") + text);
}

bool Interpreter::endsForSteps() {
  if (budget_.overspent())
    endRun(QStringLiteral("Script stopped after %1 steps").arg(budget_.limits().steps));
  return budget_.ended();
}

void Interpreter::endRun(const QString& why) {
  if (budget_.ended())
    return;
  budget_.end();
  host_.printError(why);
}

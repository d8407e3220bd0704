#include "script/Interpreter.h"

#include <utility>

#include "script/AliasLookup.h"
#include "script/CallStack.h"
#include "script/ScriptHost.h"

namespace kelmora::script {

/// Where an action comes from, which decides what a pause means.
enum class Interpreter::Place { Alone, List, Body };

struct Interpreter::Stack {
  /// A pause that stands outside every list; one in a body without its delay.
  Pause pause = {};
  CallStack calls = {};
  /// The action of the outermost list that all this has come from.
  QString started = {};
};

struct Interpreter::Next {
  QString action;
  Place place;
};

Interpreter::Interpreter(ScriptHost& host, VariableTable& variables, const AliasLookup& aliases,
                         qint64 steps)
    : aliases_(aliases),
      budget_(steps),
      host_(host, budget_),
      losses_(host),
      queue_(host_, *this),
      commands_(host_, variables, queue_, budget_, losses_) {}

Pause Interpreter::interpretAction(QString action) {
  const Losses::Event event(losses_);
  const RunBudget::Run run(budget_);
  Stack stack{.started = action};
  perform(stack, {std::move(action), Place::Alone});
  finish(stack);
  return stack.pause;
}

void Interpreter::runList(const QStringList& actions) {
  const Losses::Event event(losses_);
  const RunBudget::Run run(budget_);
  Stack stack;
  stack.calls.push(actions);
  finish(stack);
}

void Interpreter::finish(Stack& stack) {
  while (!stack.calls.isEmpty() && !budget_.ended())
    if (std::optional<Next> next = nextOf(stack))
      perform(stack, *std::move(next));
}

std::optional<Interpreter::Next> Interpreter::nextOf(Stack& stack) {
  if (auto* const list = std::get_if<CallStack::List>(&stack.calls.innermost())) {
    if (list->next < list->actions.size()) {
      Next next{list->actions.at(list->next++), Place::List};
      if (!list->alias)
        stack.started = next.action;
      return next;
    }
    stack.calls.pop();
    return std::nullopt;
  }
  std::optional<QString> body = bodyOf(stack);
  if (!body)
    return std::nullopt;
  return Next{*std::move(body), Place::Body};
}

std::optional<QString> Interpreter::bodyOf(Stack& stack) {
  CallStack::Frame& frame = stack.calls.innermost();
  QString body;
  if (auto* const once = std::get_if<Once>(&frame)) {
    body = std::move(once->body);
    stack.calls.pop();
    return body;
  }
  if (auto* const loop = std::get_if<Repeat>(&frame)) {
    body = loop->body;
    if (--loop->runs == 0)
      stack.calls.pop();
    return body;
  }
  auto& loop = std::get<CallStack::ConditionLoop>(frame);
  if (commands_.conditionFlag() && loop.runsLeft > 0) {
    --loop.runsLeft;
    return loop.body;
  }
  stack.calls.pop();
  if (commands_.conditionFlag())
    host_.printError(QStringLiteral("/condloop has reached maximum evaluation"));
  return std::nullopt;
}

void Interpreter::perform(Stack& stack, const Next& next) {
  budget_.spend(1);
  budget_.spendText(next.action.size());
  if (endsForSteps(stack))
    return;
  if (next.action.startsWith(u'/') && !next.action.startsWith(u"//")) {
    const std::optional<Sequel> sequel = commands_.run(next.action);
    if (endsForSteps(stack))
      return;
    if (sequel) {
      follow(stack, *sequel, next.place);
      return;
    }
  }
  const bool doubled = next.action.startsWith(u"//");
  callOrSend(stack, doubled ? next.action.sliced(1) : next.action, next.place);
}

void Interpreter::follow(Stack& stack, const Sequel& sequel, Place place) {
  if (const auto* const pause = std::get_if<Pause>(&sequel)) {
    if (!stack.calls.holdsList())
      stack.pause.timerId = pause->timerId;
    if (place == Place::Alone)
      stack.pause.delay = pause->delay;
    else if (place == Place::List && pause->delay.count() > 0)
      park(stack, *pause);
  } else if (const auto* const once = std::get_if<Once>(&sequel)) {
    stack.calls.push(*once);
  } else if (const auto* const repeat = std::get_if<Repeat>(&sequel)) {
    if (repeat->runs > 0)
      stack.calls.push(*repeat);
  } else if (const auto* const loop = std::get_if<CondLoop>(&sequel)) {
    stack.calls.push(CallStack::ConditionLoop{loop->body, Commands::condLoopLimit});
  }
}

void Interpreter::park(Stack& stack, const Pause& pause) {
  // The pause was in the innermost list, which ends here.
  const auto& list = std::get<CallStack::List>(stack.calls.innermost());
  const QStringList rest = list.actions.mid(list.next);
  budget_.spendCopies(rest.size());
  stack.calls.pop();
  queue_.park(pause, rest);
}

void Interpreter::callOrSend(Stack& stack, const QString& text, Place place) {
  const auto caller = place == Place::List ? CallStack::Caller::List : CallStack::Caller::Other;
  const QStringList* const commands = aliases_.commandsOf(text);
  if (commands == nullptr) {
    host_.sendLine(text);
  } else if (stack.calls.isCircle(text, caller)) {
    stack.calls.leave(text);
    losses_.tell(QStringLiteral("Endless alias stopped: ") + text);
  } else {
    budget_.spendCall(stack.calls.size());
    stack.calls.call(text, *commands, caller);
  }
}

bool Interpreter::endsForSteps(const Stack& stack) {
  if (budget_.overspent() && !budget_.ended()) {
    budget_.end();
    losses_.tell(QStringLiteral("Script stopped after %1 steps: ").arg(budget_.limit()),
                 stack.started);
  }
  return budget_.ended();
}

}  // namespace kelmora::script

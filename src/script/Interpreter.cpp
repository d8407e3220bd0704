#include "script/Interpreter.h"

#include <utility>

#include "script/AliasLookup.h"
#include "script/CallStack.h"
#include "script/Log.h"
#include "script/ScriptHost.h"

namespace kelmora::script {

namespace {

/// A visitor made of one function for each alternative of a variant.
template <typename... Functions>
struct ForEach : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
ForEach(Functions...) -> ForEach<Functions...>;

}  // namespace

/// Where an action stands. It decides what a pause there means.
enum class Interpreter::Place {
  Alone,  ///< given to interpretAction()
  List,   ///< a line of a list
  Body,   ///< the body of a condition or loop
};

struct Interpreter::Run {
  /// What interpretAction() returns.
  Pause pause = {};
  CallStack calls = {};
  /// The action of the outermost list that is under way now, with all that it
  /// has started.
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
      timers_(host_, [this](const QStringList& rest) { runActions(rest); }),
      commands_(host_, variables, budget_, losses_) {}

void Interpreter::runActions(const QStringList& actions) {
  const Losses::Event event(losses_);
  const RunBudget::Run budgeted(budget_);
  Run run;
  run.calls.push(actions);
  finish(run);
}

Pause Interpreter::interpretAction(QString action) {
  const Losses::Event event(losses_);
  const RunBudget::Run budgeted(budget_);
  Run run{.started = action};
  perform(run, {std::move(action), Place::Alone});
  finish(run);
  return run.pause;
}

void Interpreter::finish(Run& run) {
  while (!run.calls.isEmpty() && !budget_.ended())
    if (std::optional<Next> next = nextOf(run))
      perform(run, *std::move(next));
}

std::optional<Interpreter::Next> Interpreter::nextOf(Run& run) {
  if (auto* const list = std::get_if<CallStack::List>(&run.calls.innermost())) {
    if (list->next < list->actions.size()) {
      Next next{list->actions.at(list->next++), Place::List};
      if (!list->alias)
        run.started = next.action;
      return next;
    }
    run.calls.pop();
    return std::nullopt;
  }
  std::optional<QString> body = bodyOf(run);
  if (!body)
    return std::nullopt;
  return Next{*std::move(body), Place::Body};
}

std::optional<QString> Interpreter::bodyOf(Run& run) {
  CallStack::Frame& frame = run.calls.innermost();
  QString body;
  if (auto* const once = std::get_if<Once>(&frame)) {
    body = std::move(once->body);
    run.calls.pop();
    return body;
  }
  if (auto* const loop = std::get_if<Repeat>(&frame)) {
    body = loop->body;
    if (--loop->runs == 0)
      run.calls.pop();
    return body;
  }
  auto& loop = std::get<CallStack::ConditionLoop>(frame);
  if (commands_.conditionFlag() && loop.runsLeft > 0) {
    --loop.runsLeft;
    return loop.body;
  }
  run.calls.pop();
  if (commands_.conditionFlag())
    host_.printError(tr("/condloop has reached maximum evaluation"));
  return std::nullopt;
}

void Interpreter::perform(Run& run, const Next& next) {
  budget_.spend(1);
  budget_.spendText(next.action.size());
  if (endsForSteps(run))
    return;
  const bool doubled = next.action.startsWith(u"//");
  if (next.action.startsWith(u'/') && !doubled) {
    const std::optional<Sequel> sequel = commands_.run(next.action);
    if (endsForSteps(run))
      return;
    if (sequel) {
      follow(run, *sequel, next.place);
      return;
    }
  }
  callOrSend(run, doubled ? next.action.sliced(1) : next.action, next.place);
}

void Interpreter::follow(Run& run, const Sequel& sequel, Place place) {
  std::visit(ForEach{
                 [](std::monostate) {},
                 [&](const Pause& sought) { pause(run, sought, place); },
                 [&](const Unpause& sought) { timers_.unpause(sought.timerId); },
                 [&](const Once& once) { run.calls.push(once); },
                 [&](const Repeat& loop) {
                   if (loop.runs > 0)
                     run.calls.push(loop);
                 },
                 [&](const CondLoop& loop) {
                   run.calls.push(CallStack::ConditionLoop{loop.body, Commands::condLoopLimit});
                 },
             },
             sequel);
}

void Interpreter::pause(Run& run, const Pause& pause, Place place) {
  if (!run.calls.holdsList())
    run.pause.timerId = pause.timerId;
  if (place == Place::Alone)
    run.pause.delay = pause.delay;
  if (place != Place::List || pause.delay.count() <= 0)
    return;
  const auto& list = std::get<CallStack::List>(run.calls.innermost());
  const QStringList rest = list.actions.mid(list.next);
  budget_.spendCopies(rest.size());
  run.calls.pop();
  timers_.park(pause, rest);
}

void Interpreter::callOrSend(Run& run, const QString& text, Place place) {
  const auto caller = place == Place::List ? CallStack::Caller::List : CallStack::Caller::Other;
  const QStringList* const commands = aliases_.commandsOf(text);
  if (commands == nullptr) {
    host_.sendLine(text);
  } else if (run.calls.isCircle(text, caller)) {
    run.calls.leave(text);
    if (losses_.tell(tr("Endless alias stopped: %1").arg(text)))
      qCInfo(scriptsLog) << "endless alias stopped, lists and loops open:" << run.calls.size();
  } else {
    budget_.spendCall(run.calls.size());
    run.calls.call(text, *commands, caller);
  }
}

bool Interpreter::endsForSteps(const Run& run) {
  if (budget_.overspent() && !budget_.ended()) {
    budget_.end();
    if (losses_.tell(tr("Script stopped after %1 steps: %2").arg(budget_.limit()), run.started))
      qCInfo(scriptsLog) << "run stopped, lists and loops open:" << run.calls.size();
  }
  return budget_.ended();
}

}  // namespace kelmora::script

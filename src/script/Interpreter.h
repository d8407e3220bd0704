#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "script/ActionQueue.h"
#include "script/Commands.h"
#include "script/Losses.h"
#include "script/MeteredHost.h"
#include "script/RunBudget.h"

namespace kelmora::script {

class AliasLookup;
class ScriptHost;
class VariableTable;

/// Understands one action: a slash-command, an alias, or a line for the game
/// server (written with a doubled slash if it begins with one).
///
/// An alias that comes back to itself by lines of lists alone has no end for
/// certain: it is stopped where it would begin again, and what stands around it
/// goes on. One that comes back through a condition or a loop may well end, and
/// runs until RunBudget says otherwise.
class Interpreter {
 public:
  /// Host, variables and aliases outlive the interpreter.
  Interpreter(ScriptHost& host, VariableTable& variables, const AliasLookup& aliases,
              qint64 steps = RunBudget::stepLimit);
  Q_DISABLE_COPY_MOVE(Interpreter)

  /// Runs one action, and all that it starts, to completion. If the action
  /// itself is a pause, the result is that pause, and making a timer of it is
  /// the caller's part; otherwise it has no delay. A pause in the body of a
  /// condition or loop leaves its id in the result, but no delay.
  [[nodiscard]] Pause interpretAction(QString action);

  /// The lists that go with this interpreter.
  [[nodiscard]] ActionQueue& actionQueue() { return queue_; }
  /// For an event that starts several runs.
  [[nodiscard]] Losses& losses() { return losses_; }

 private:
  friend class ActionQueue;
  struct Stack;
  struct Next;
  enum class Place;

  /// Runs a list as far as its first pause.
  void runList(const QStringList& actions);
  void finish(Stack& stack);
  [[nodiscard]] std::optional<Next> nextOf(Stack& stack);
  [[nodiscard]] std::optional<QString> bodyOf(Stack& stack);
  void perform(Stack& stack, const Next& next);
  void follow(Stack& stack, const Sequel& sequel, Place place);
  void park(Stack& stack, const Pause& pause);
  void callOrSend(Stack& stack, const QString& text, Place place);
  [[nodiscard]] bool endsForSteps(const Stack& stack);

  const AliasLookup& aliases_;
  RunBudget budget_;
  MeteredHost host_;
  Losses losses_;
  ActionQueue queue_;
  Commands commands_;
};

}  // namespace kelmora::script

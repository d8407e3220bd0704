#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <optional>

#include "script/Commands.h"
#include "script/Losses.h"
#include "script/MeteredHost.h"
#include "script/PendingTimers.h"
#include "script/RunBudget.h"
#include "script/Sequel.h"

namespace kelmora::script {

class AliasLookup;
class ScriptHost;
class VariableTable;

/// Runs actions. Each is a slash-command, an alias, or a line for the game
/// server; a line that begins with a slash is written with two of them.
///
/// An alias that calls itself through nothing but lists of actions would never
/// end, since nothing on the way decides anything. It is stopped where it would
/// begin again, and the actions around it go on. An alias that calls itself
/// through a condition or a loop may end, so it runs on, within RunBudget.
class Interpreter {
  Q_DECLARE_TR_FUNCTIONS(Script)

 public:
  /// Host, variables and aliases must outlive the interpreter.
  Interpreter(ScriptHost& host, VariableTable& variables, const AliasLookup& aliases,
              qint64 steps = RunBudget::stepLimit);
  Q_DISABLE_COPY_MOVE(Interpreter)

  /// Runs the actions in order, up to the first pause, which puts off the rest.
  /// Aliases and loops among them have run when this returns.
  void runActions(const QStringList& actions);

  /// Runs one action, and all that it starts, to its end. If the action itself
  /// is a pause, it is returned, and it is for the caller to make a timer of it.
  /// Otherwise what is returned has no delay; it has an id if there was a pause
  /// in the body of a condition or loop, which puts nothing off.
  [[nodiscard]] Pause interpretAction(QString action);

  [[nodiscard]] PendingTimers& pendingTimers() { return timers_; }
  /// For an event that starts several runs, see Losses::Event.
  [[nodiscard]] Losses& losses() { return losses_; }

 private:
  struct Run;
  struct Next;
  enum class Place;

  void finish(Run& run);
  /// The next action of the innermost list or loop; nothing if that is over.
  [[nodiscard]] std::optional<Next> nextOf(Run& run);
  [[nodiscard]] std::optional<QString> bodyOf(Run& run);
  void perform(Run& run, const Next& next);
  void follow(Run& run, const Sequel& sequel, Place place);
  void pause(Run& run, const Pause& pause, Place place);
  void callOrSend(Run& run, const QString& text, Place place);
  /// Whether the run is over because it has used up its budget.
  [[nodiscard]] bool endsForSteps(const Run& run);

  const AliasLookup& aliases_;
  RunBudget budget_;
  MeteredHost host_;
  Losses losses_;
  PendingTimers timers_;
  Commands commands_;
};

}  // namespace kelmora::script

#pragma once

#include <QCoreApplication>
#include <QString>
#include <optional>

#include "script/Arguments.h"
#include "script/Arithmetic.h"
#include "script/CommandTable.h"
#include "script/Comparisons.h"
#include "script/Sequel.h"

namespace kelmora::script {

class Losses;
class RunBudget;
class ScriptHost;
class VariableTable;

/// Runs the slash-commands. CommandTable.h lists them; to add one, write its
/// row there, and here its function and its entry in the list of handlers.
class Commands {
  Q_DECLARE_TR_FUNCTIONS(Script)

 public:
  /// The most rounds of a /condloop and of a /repeat. That they differ by one
  /// is a quirk kept on purpose.
  static constexpr int condLoopLimit = 513;
  static constexpr int repeatLimit = 512;

  Commands(ScriptHost& host, VariableTable& variables, RunBudget& budget, Losses& losses)
      : host_(host), variables_(variables), budget_(budget), losses_(losses) {}

  /// Runs the command whose word is the text before the action's first space,
  /// and returns what is to be done after it. Returns nothing if there is no
  /// command of exactly that word. A mistake in a command is shown to the
  /// player, and nothing is left to do.
  [[nodiscard]] std::optional<Sequel> run(const QString& action);

  /// The result of the latest comparison in any script.
  [[nodiscard]] bool conditionFlag() const { return conditionFlag_; }

 private:
  using Arguments = script::Arguments;
  struct Handler;
  struct Handlers;

  /// Trims the arguments and replaces their variables, as the command's row says.
  void prepare(const CommandRow& command, Arguments& arguments);
  void substitute(const CommandRow& command, QString& argument);
  void tellCut(QLatin1StringView word);

  Sequel set(const Arguments& arguments);
  Sequel remove(const Arguments& arguments);
  Sequel list(const Arguments& arguments);
  template <script::Operation operation>
  Sequel calculate(const Arguments& arguments);
  template <script::Comparison comparison>
  Sequel compare(const Arguments& arguments);
  Sequel cond(const Arguments& arguments);
  Sequel condLoop(const Arguments& arguments);
  Sequel repeat(const Arguments& arguments);
  Sequel echo(const Arguments& arguments);
  Sequel pause(const Arguments& arguments);
  Sequel unpause(const Arguments& arguments);

  ScriptHost& host_;
  VariableTable& variables_;
  RunBudget& budget_;
  Losses& losses_;
  bool conditionFlag_ = false;
};

}  // namespace kelmora::script

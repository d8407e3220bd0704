#pragma once

#include <QString>
#include <chrono>
#include <optional>
#include <variant>

#include "script/Arguments.h"
#include "script/Arithmetic.h"
#include "script/Comparisons.h"

namespace kelmora::script {

class ActionQueue;
class Losses;
class RunBudget;
class ScriptHost;
class VariableTable;

// What a command leaves for the interpreter to do.

/// Run the rest of the list later.
struct Pause {
  std::chrono::milliseconds delay{0};  ///< zero or less is no pause
  QString timerId = {};

  [[nodiscard]] bool operator==(const Pause&) const = default;
};
/// Run the body at once. A pause in this or the next two holds nothing back.
struct Once {
  QString body;
};
/// Run the body this many times.
struct Repeat {
  QString body;
  int runs;
};
/// Run the body while the condition flag is set.
struct CondLoop {
  QString body;
};
using Sequel = std::variant<std::monostate, Pause, Once, Repeat, CondLoop>;

/// The slash-commands: one table, one row for each.
class Commands {
 public:
  /// The condition loop runs its body at most this often, /repeat once less.
  static constexpr int condLoopLimit = 513;
  static constexpr int repeatLimit = 512;

  Commands(ScriptHost& host, VariableTable& variables, ActionQueue& queue, RunBudget& budget,
           Losses& losses)
      : host_(host), variables_(variables), queue_(queue), budget_(budget), losses_(losses) {}

  /// Runs the command whose word stands before the action's first space;
  /// nothing when that is no command's. Words are compared exactly. Errors are
  /// printed and leave nothing to do.
  [[nodiscard]] std::optional<Sequel> run(const QString& action);

  /// What the latest comparison of any script found.
  [[nodiscard]] bool conditionFlag() const { return conditionFlag_; }

 private:
  using Arguments = script::Arguments;
  struct Command;
  struct Table;

  [[nodiscard]] static std::optional<Arguments> split(const Command& command,
                                                      const QString& action);
  /// The arguments as the command takes them: trimmed, and their variables
  /// replaced.
  void prepare(const Command& command, Arguments& arguments);
  void substitute(const Command& command, QString& argument);
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
  ActionQueue& queue_;
  RunBudget& budget_;
  Losses& losses_;
  bool conditionFlag_ = false;
};

}  // namespace kelmora::script

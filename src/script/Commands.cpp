#include "script/Commands.h"

#include <algorithm>
#include <array>

#include "scan/Integer.h"
#include "script/ActionQueue.h"
#include "script/Losses.h"
#include "script/RunBudget.h"
#include "script/ScriptHost.h"
#include "script/VariableTable.h"

using namespace Qt::Literals::StringLiterals;

namespace kelmora::script {

namespace {

enum class Form { None, One, OneRaw, Two, TextAndMaybeColour };
enum class Substituted { Nothing, First, Second, Both };

/// The colour of a text that is given none.
constexpr auto white = "FFFFFF"_L1;

}  // namespace

struct Commands::Command {
  QLatin1StringView word;
  Form form;
  Substituted substituted;
  Sequel (Commands::*handler)(const Arguments&);
  QLatin1StringView error;
};

struct Commands::Table {
  using enum Form;
  using enum Substituted;

  static constexpr std::array rows{
      Command{"/set"_L1, Two, Second, &Commands::set, "/set takes two arguments"_L1},
      Command{"/delete"_L1, One, Nothing, &Commands::remove, "/delete takes one argument"_L1},
      Command{"/variables"_L1, None, Nothing, &Commands::list, {}},
      Command{"/add"_L1, Two, Second, &Commands::calculate<Operation::Add>,
              "/add takes two arguments"_L1},
      Command{"/subtract"_L1, Two, Second, &Commands::calculate<Operation::Subtract>,
              "/subtract takes two arguments"_L1},
      Command{"/multiply"_L1, Two, Second, &Commands::calculate<Operation::Multiply>,
              "/multiply takes two arguments"_L1},
      Command{"/divide"_L1, Two, Second, &Commands::calculate<Operation::Divide>,
              "/divide takes two arguments"_L1},
      Command{"/isequal"_L1, Two, Both, &Commands::compare<Comparison::Equal>,
              "/isequal takes two arguments"_L1},
      Command{"/isnotequal"_L1, Two, Both, &Commands::compare<Comparison::NotEqual>,
              "/isnotequal takes two arguments"_L1},
      Command{"/islessthan"_L1, Two, Both, &Commands::compare<Comparison::Less>,
              "/islessthan takes two arguments"_L1},
      Command{"/isgreaterthan"_L1, Two, Both, &Commands::compare<Comparison::Greater>,
              "/isgreaterthan takes two arguments"_L1},
      Command{"/islessthanorequal"_L1, Two, Both, &Commands::compare<Comparison::LessOrEqual>,
              "/islessthanorequal takes two arguments"_L1},
      Command{"/isgreaterthanorequal"_L1, Two, Both, &Commands::compare<Comparison::GreaterOrEqual>,
              "/isgreaterthanorequal takes two arguments"_L1},
      Command{"/cond"_L1, One, Nothing, &Commands::cond, "/cond takes one argument"_L1},
      Command{"/condloop"_L1, One, Nothing, &Commands::condLoop, "/condloop takes one argument"_L1},
      Command{"/repeat"_L1, Two, First, &Commands::repeat, "/repeat takes two arguments"_L1},
      Command{"/echo"_L1, TextAndMaybeColour, First, &Commands::echo,
              "/echo takes at least one argument"_L1},
      Command{"/pause"_L1, Two, Nothing, &Commands::pause, "/pause takes two arguments"_L1},
      // A quirk of this client: its id alone keeps the blanks behind it.
      Command{"/unpause"_L1, OneRaw, Nothing, &Commands::unpause, "/unpause takes one argument"_L1},
  };
};

std::optional<Sequel> Commands::run(const QString& action) {
  const qsizetype space = action.indexOf(u' ');
  const QStringView word = space < 0 ? QStringView(action) : QStringView(action).first(space);
  const auto command = std::find_if(Table::rows.begin(), Table::rows.end(),
                                    [&](const Command& row) { return row.word == word; });
  if (command == Table::rows.end())
    return std::nullopt;
  std::optional<Arguments> arguments = split(*command, action);
  if (!arguments) {
    host_.printError(command->error);
    return Sequel();
  }
  prepare(*command, *arguments);
  // With half of its variables replaced a text is another one.
  if (budget_.overspent())
    return Sequel();
  return (this->*command->handler)(*arguments);
}

std::optional<Commands::Arguments> Commands::split(const Command& command, const QString& action) {
  if (command.form == Form::None)
    return Arguments();
  const bool mayBeOne = command.form == Form::TextAndMaybeColour;
  std::optional<Arguments> arguments;
  if (command.form == Form::Two || mayBeOne)
    arguments = script::splitTwoArguments(action);
  if (!arguments && command.form != Form::Two) {
    arguments = script::splitOneArgument(action);
    if (arguments && mayBeOne)
      arguments->second = white;
  }
  return arguments;
}

void Commands::prepare(const Command& command, Arguments& arguments) {
  if (arguments.wasCut)
    losses_.tell(QStringLiteral("Text cut at %1 bytes: ").arg(script::longestArgument),
                 command.word);
  if (command.form == Form::OneRaw)
    return;
  arguments.first = arguments.first.trimmed();
  arguments.second = arguments.second.trimmed();
  if (command.substituted == Substituted::First || command.substituted == Substituted::Both)
    substitute(command, arguments.first);
  if (command.substituted == Substituted::Second || command.substituted == Substituted::Both)
    substitute(command, arguments.second);
}

void Commands::substitute(const Command& command, QString& argument) {
  // One that is broken off has taken more steps than there are.
  const script::Substitution substitution =
      variables_.substitution(argument, (budget_.left() + 1) * RunBudget::charactersPerStep);
  budget_.spendText(substitution.work());
  argument = substitution.text();
  if (substitution.wasCut())
    tellCut(command.word);
}

void Commands::tellCut(QLatin1StringView word) {
  losses_.tell(QStringLiteral("Text cut at %1 characters: ").arg(VariableTable::maximumLength),
               word);
}

Sequel Commands::set(const Arguments& arguments) {
  variables_.set(arguments.first, arguments.second);
  return {};
}

Sequel Commands::remove(const Arguments& arguments) {
  if (!variables_.remove(arguments.first))
    host_.printError(QStringLiteral("No such variable to delete: ") + arguments.first);
  return {};
}

Sequel Commands::list(const Arguments& /*arguments*/) {
  host_.printInfo(QStringLiteral("Global variables:"));
  // A copy, in case the host changes them meanwhile.
  const VariableTable::Entries entries = variables_.entries();
  for (auto entry = entries.cbegin(); entry != entries.cend() && !budget_.overspent(); ++entry)
    host_.printInfo(u' ' + entry.key() + QStringLiteral(" : ") + entry.value());
  return {};
}

template <Operation operation>
Sequel Commands::calculate(const Arguments& arguments) {
  if (!variables_.contains(arguments.first)) {
    host_.printError(QStringLiteral("No such variable: ") + arguments.first);
    return {};
  }
  const QString value = variables_.value(arguments.first);
  budget_.spendNumber(value.size() + arguments.second.size());
  const auto result = script::calculate(operation, value, arguments.second);
  // Nothing else grows.
  if (result && !variables_.set(arguments.first, *result))
    tellCut("/add"_L1);
  return {};
}

template <Comparison comparison>
Sequel Commands::compare(const Arguments& arguments) {
  budget_.spendNumber(arguments.first.size() + arguments.second.size());
  conditionFlag_ = script::compare(comparison, arguments.first, arguments.second);
  return {};
}

Sequel Commands::cond(const Arguments& arguments) {
  if (conditionFlag_)
    return Once{arguments.first};
  return {};
}

Sequel Commands::condLoop(const Arguments& arguments) {
  return CondLoop{arguments.first};
}

Sequel Commands::repeat(const Arguments& arguments) {
  return Repeat{arguments.second, script::loopCount(arguments.first, repeatLimit)};
}

Sequel Commands::echo(const Arguments& arguments) {
  host_.printText(arguments.first, u'#' + arguments.second);
  return {};
}

Sequel Commands::pause(const Arguments& arguments) {
  return Pause{std::chrono::milliseconds(scan::toInt(arguments.second.toLatin1())),
               arguments.first};
}

Sequel Commands::unpause(const Arguments& arguments) {
  queue_.unpause(arguments.first);
  return {};
}

}  // namespace kelmora::script

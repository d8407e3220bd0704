#include "script/Commands.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "scan/Integer.h"
#include "script/Log.h"
#include "script/Losses.h"
#include "script/RunBudget.h"
#include "script/ScriptHost.h"
#include "script/VariableTable.h"

using namespace Qt::Literals::StringLiterals;

namespace kelmora::script {

namespace {

/// The colour of an /echo that names none.
constexpr auto white = "FFFFFF"_L1;

std::optional<Arguments> split(ArgumentForm form, const QString& action) {
  switch (form) {
    case ArgumentForm::None:
      return Arguments();
    case ArgumentForm::One:
    case ArgumentForm::OneUntrimmed:
      return splitOneArgument(action);
    case ArgumentForm::Two:
      return splitTwoArguments(action);
    case ArgumentForm::TextAndMaybeColour:
      break;
  }
  std::optional<Arguments> arguments = splitTwoArguments(action);
  if (!arguments) {
    arguments = splitOneArgument(action);
    if (arguments)
      arguments->second = white;
  }
  return arguments;
}

constexpr std::string_view plain(QLatin1StringView text) {
  return {text.data(), static_cast<std::size_t>(text.size())};
}

}  // namespace

struct Commands::Handler {
  std::string_view word;
  Sequel (Commands::*run)(const Arguments&);
};

struct Commands::Handlers {
  static constexpr std::array all{
      Handler{"/set", &Commands::set},
      Handler{"/delete", &Commands::remove},
      Handler{"/variables", &Commands::list},
      Handler{"/add", &Commands::calculate<Operation::Add>},
      Handler{"/subtract", &Commands::calculate<Operation::Subtract>},
      Handler{"/multiply", &Commands::calculate<Operation::Multiply>},
      Handler{"/divide", &Commands::calculate<Operation::Divide>},
      Handler{"/isequal", &Commands::compare<Comparison::Equal>},
      Handler{"/isnotequal", &Commands::compare<Comparison::NotEqual>},
      Handler{"/islessthan", &Commands::compare<Comparison::Less>},
      Handler{"/isgreaterthan", &Commands::compare<Comparison::Greater>},
      Handler{"/islessthanorequal", &Commands::compare<Comparison::LessOrEqual>},
      Handler{"/isgreaterthanorequal", &Commands::compare<Comparison::GreaterOrEqual>},
      Handler{"/cond", &Commands::cond},
      Handler{"/condloop", &Commands::condLoop},
      Handler{"/repeat", &Commands::repeat},
      Handler{"/echo", &Commands::echo},
      Handler{"/pause", &Commands::pause},
      Handler{"/unpause", &Commands::unpause},
  };
};

std::optional<Sequel> Commands::run(const QString& action) {
  constexpr auto rows = commandRows();
  static_assert(std::equal(rows.begin(), rows.end(), Handlers::all.begin(), Handlers::all.end(),
                           [](const CommandRow& row, const Handler& handler) {
                             return plain(row.word) == handler.word;
                           }),
                "each command has a row and a handler, both in the same order");
  const qsizetype space = action.indexOf(u' ');
  const QStringView word = space < 0 ? QStringView(action) : QStringView(action).first(space);
  const auto command = std::find_if(rows.begin(), rows.end(),
                                    [&](const CommandRow& row) { return row.word == word; });
  if (command == rows.end())
    return std::nullopt;
  std::optional<Arguments> arguments = split(command->form, action);
  if (!arguments) {
    host_.printError(errorOf(*command));
    return Sequel();
  }
  prepare(*command, *arguments);
  // Some variables may not have been replaced: the command would do something
  // that nobody wrote.
  if (budget_.overspent())
    return Sequel();
  const Handler& handler = Handlers::all.at(static_cast<std::size_t>(command - rows.begin()));
  return (this->*handler.run)(*arguments);
}

void Commands::prepare(const CommandRow& command, Arguments& arguments) {
  if (arguments.wasCut &&
      losses_.tell(tr("Text cut at %1 bytes: %2").arg(longestArgument), command.word))
    qCInfo(scriptsLog) << "argument cut, command" << command.word;
  if (command.form == ArgumentForm::OneUntrimmed)
    return;
  arguments.first = arguments.first.trimmed();
  arguments.second = arguments.second.trimmed();
  if (command.substituted == Substituted::First || command.substituted == Substituted::Both)
    substitute(command, arguments.first);
  if (command.substituted == Substituted::Second || command.substituted == Substituted::Both)
    substitute(command, arguments.second);
}

void Commands::substitute(const CommandRow& command, QString& argument) {
  // The limit on its work is one step more than is left, so a substitution that
  // is broken off always overspends the budget and thereby ends the run.
  const Substitution substitution =
      variables_.substitution(argument, (budget_.left() + 1) * RunBudget::charactersPerStep);
  budget_.spendText(substitution.work());
  argument = substitution.text();
  if (substitution.wasCut())
    tellCut(command.word);
}

void Commands::tellCut(QLatin1StringView word) {
  if (losses_.tell(tr("Text cut at %1 characters: %2").arg(VariableTable::maximumLength), word))
    qCInfo(scriptsLog) << "value or text cut, command" << word;
}

Sequel Commands::set(const Arguments& arguments) {
  variables_.set(arguments.first, arguments.second);
  return {};
}

Sequel Commands::remove(const Arguments& arguments) {
  if (!variables_.remove(arguments.first))
    host_.printError(tr("No such variable to delete: %1").arg(arguments.first));
  return {};
}

Sequel Commands::list(const Arguments& /*arguments*/) {
  host_.printInfo(tr("Global variables:"));
  // A copy, because the host may change the variables while it prints.
  const VariableTable::Entries entries = variables_.entries();
  for (auto entry = entries.cbegin(); entry != entries.cend() && !budget_.overspent(); ++entry)
    host_.printInfo(u' ' + entry.key() + QStringLiteral(" : ") + entry.value());
  return {};
}

template <Operation operation>
Sequel Commands::calculate(const Arguments& arguments) {
  if (!variables_.contains(arguments.first)) {
    host_.printError(tr("No such variable: %1").arg(arguments.first));
    return {};
  }
  const QString value = variables_.value(arguments.first);
  budget_.spendNumber(value.size() + arguments.second.size());
  const auto result = script::calculate(operation, value, arguments.second);
  // The word is known: only /add, which appends text, makes a value longer.
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
  return Unpause{arguments.first};
}

}  // namespace kelmora::script

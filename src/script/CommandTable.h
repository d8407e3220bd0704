#pragma once

#include <QLatin1StringView>

#include <QString>
#include <array>
#include <span>

namespace kelmora::script {

/// How the text after a command's word is divided into arguments. Blanks at
/// both ends of an argument are dropped unless stated otherwise.
enum class ArgumentForm {
  None,                ///< no arguments; whatever follows the word is ignored
  One,                 ///< everything that follows the word
  OneUntrimmed,        ///< the same, but blanks at its end belong to it
  Two,                 ///< two, divided at the first comma
  TextAndMaybeColour,  ///< two, divided at the first comma, or the text alone
};

/// The arguments in which "{name}" is replaced by the value of that variable.
enum class Substituted { Nothing, First, Second, Both };

/// One command, as the player sees it. What it does is in Commands.cpp.
struct CommandRow {
  QLatin1StringView word;
  ArgumentForm form;
  Substituted substituted;
  QLatin1StringView error;  ///< what is said when an argument is missing
};

namespace commandtable {

using namespace Qt::Literals::StringLiterals;
using enum ArgumentForm;
using enum Substituted;

inline constexpr std::array rows{
    CommandRow{"/set"_L1, Two, Second, "/set takes two arguments"_L1},
    CommandRow{"/delete"_L1, One, Nothing, "/delete takes one argument"_L1},
    CommandRow{"/variables"_L1, None, Nothing, {}},
    CommandRow{"/add"_L1, Two, Second, "/add takes two arguments"_L1},
    CommandRow{"/subtract"_L1, Two, Second, "/subtract takes two arguments"_L1},
    CommandRow{"/multiply"_L1, Two, Second, "/multiply takes two arguments"_L1},
    CommandRow{"/divide"_L1, Two, Second, "/divide takes two arguments"_L1},
    CommandRow{"/isequal"_L1, Two, Both, "/isequal takes two arguments"_L1},
    CommandRow{"/isnotequal"_L1, Two, Both, "/isnotequal takes two arguments"_L1},
    CommandRow{"/islessthan"_L1, Two, Both, "/islessthan takes two arguments"_L1},
    CommandRow{"/isgreaterthan"_L1, Two, Both, "/isgreaterthan takes two arguments"_L1},
    CommandRow{"/islessthanorequal"_L1, Two, Both, "/islessthanorequal takes two arguments"_L1},
    CommandRow{"/isgreaterthanorequal"_L1, Two, Both,
               "/isgreaterthanorequal takes two arguments"_L1},
    CommandRow{"/cond"_L1, One, Nothing, "/cond takes one argument"_L1},
    CommandRow{"/condloop"_L1, One, Nothing, "/condloop takes one argument"_L1},
    CommandRow{"/repeat"_L1, Two, First, "/repeat takes two arguments"_L1},
    CommandRow{"/echo"_L1, TextAndMaybeColour, First, "/echo takes at least one argument"_L1},
    CommandRow{"/pause"_L1, Two, Nothing, "/pause takes two arguments"_L1},
    // A quirk kept on purpose: blanks behind this id are taken as part of it.
    CommandRow{"/unpause"_L1, OneUntrimmed, Nothing, "/unpause takes one argument"_L1},
};

}  // namespace commandtable

/// All commands.
[[nodiscard]] constexpr std::span<const CommandRow> commandRows() {
  return commandtable::rows;
}

}  // namespace kelmora::script

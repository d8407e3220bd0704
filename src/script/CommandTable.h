#pragma once

#include <QLatin1StringView>

#include <QCoreApplication>
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
  const char* error;  ///< what is said, translated, of the word when an argument is missing
};

namespace commandtable {

using namespace Qt::Literals::StringLiterals;
using enum ArgumentForm;
using enum Substituted;

inline constexpr const char* takesOne = QT_TRANSLATE_NOOP("Script", "%1 takes one argument");
inline constexpr const char* takesOneOrMore =
    QT_TRANSLATE_NOOP("Script", "%1 takes at least one argument");
inline constexpr const char* takesTwo = QT_TRANSLATE_NOOP("Script", "%1 takes two arguments");

inline constexpr std::array rows{
    CommandRow{"/set"_L1, Two, Second, takesTwo},
    CommandRow{"/delete"_L1, One, Nothing, takesOne},
    CommandRow{"/variables"_L1, None, Nothing, nullptr},
    CommandRow{"/add"_L1, Two, Second, takesTwo},
    CommandRow{"/subtract"_L1, Two, Second, takesTwo},
    CommandRow{"/multiply"_L1, Two, Second, takesTwo},
    CommandRow{"/divide"_L1, Two, Second, takesTwo},
    CommandRow{"/isequal"_L1, Two, Both, takesTwo},
    CommandRow{"/isnotequal"_L1, Two, Both, takesTwo},
    CommandRow{"/islessthan"_L1, Two, Both, takesTwo},
    CommandRow{"/isgreaterthan"_L1, Two, Both, takesTwo},
    CommandRow{"/islessthanorequal"_L1, Two, Both, takesTwo},
    CommandRow{"/isgreaterthanorequal"_L1, Two, Both, takesTwo},
    CommandRow{"/cond"_L1, One, Nothing, takesOne},
    CommandRow{"/condloop"_L1, One, Nothing, takesOne},
    CommandRow{"/repeat"_L1, Two, First, takesTwo},
    CommandRow{"/echo"_L1, TextAndMaybeColour, First, takesOneOrMore},
    CommandRow{"/pause"_L1, Two, Nothing, takesTwo},
    // A quirk kept on purpose: blanks behind this id are taken as part of it.
    CommandRow{"/unpause"_L1, OneUntrimmed, Nothing, takesOne},
};

}  // namespace commandtable

/// All commands.
[[nodiscard]] constexpr std::span<const CommandRow> commandRows() {
  return commandtable::rows;
}

/// What is said when an argument of the command is missing.
[[nodiscard]] inline QString errorOf(const CommandRow& row) {
  return row.error == nullptr ? QString()
                              : QCoreApplication::translate("Script", row.error).arg(row.word);
}

}  // namespace kelmora::script

#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace kelmora::app {

/// What the program prints and the code it ends with when it does not open its
/// window.
struct CommandLineAnswer {
  QString text;
  int exitCode;  ///< 0 for an answer that was asked for, 2 for a wrong option
};

/// What the program answers to its arguments, the ones behind its name; nothing
/// when the window is to open. Options of the toolkit (-style, -platform ...) are
/// left to the toolkit, and arguments that are no options are ignored.
[[nodiscard]] std::optional<CommandLineAnswer> answerTo(const QStringList& arguments);

}  // namespace kelmora::app

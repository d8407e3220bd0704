#pragma once

#include <QString>
#include <optional>

namespace kelmora::script {

/// The arguments of a command. Neither is trimmed yet.
struct Arguments {
  QString first;
  QString second;
  /// Whether the last argument was longer than `longestArgument`; what was
  /// beyond that is gone.
  bool wasCut = false;
};

// A quirk kept on purpose: the action is turned into Latin-1 bytes, divided, and
// each argument is read back as UTF-8. ASCII comes out as it was. A character
// that Latin-1 lacks becomes "?". The other ones become U+FFFD, unless their
// bytes happen to be valid UTF-8.

/// The most bytes that an argument can have.
inline constexpr qsizetype longestArgument = 1023;

/// Everything between the blanks after the command word and the end of the line,
/// cut to `longestArgument` bytes. Returns nothing if that is empty.
[[nodiscard]] std::optional<Arguments> splitOneArgument(const QString& action);

/// The same text divided at its first comma, the second part cut to
/// `longestArgument` bytes. Returns nothing if the comma is missing, if a part is
/// empty, or if the first part is longer than `longestArgument`.
[[nodiscard]] std::optional<Arguments> splitTwoArguments(const QString& action);

}  // namespace kelmora::script

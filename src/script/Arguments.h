#pragma once

#include <QString>
#include <optional>

namespace kelmora::script {

/// The arguments of a command, as they stand in the action.
struct Arguments {
  QString first;
  QString second;
  /// Whether the end of the last one had no room.
  bool wasCut = false;
};

// Arguments are cut out of the action's Latin-1 bytes and read back as UTF-8, a
// quirk kept on purpose: ASCII survives, "?" stands for what Latin-1 lacks, and
// bytes above 127 that are no UTF-8 become U+FFFD. Neither is trimmed.

/// Bytes that an argument holds.
inline constexpr qsizetype longestArgument = 1023;

/// All that follows the command word and its blanks, up to the line's end; cut
/// where it is longer than an argument. Nothing when that is empty.
[[nodiscard]] std::optional<Arguments> splitOneArgument(const QString& action);

/// What follows the command word, divided at the first comma. Nothing when a
/// part is empty or the comma is missing, or when the first part is longer than
/// an argument; the second is cut there.
[[nodiscard]] std::optional<Arguments> splitTwoArguments(const QString& action);

}  // namespace kelmora::script

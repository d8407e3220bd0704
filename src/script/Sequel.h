#pragma once

#include <QString>
#include <chrono>
#include <variant>

namespace kelmora::script {

// What a command asks the interpreter to do after it.

/// Put off the rest of the list for a while.
struct Pause {
  std::chrono::milliseconds delay{0};  ///< zero or less is no pause
  QString timerId = {};

  [[nodiscard]] bool operator==(const Pause&) const = default;
};
/// Cancel a waiting pause.
struct Unpause {
  QString timerId;
};
/// Run the body at once. A pause in the body of this or of the two loops below
/// does not put anything off.
struct Once {
  QString body;
};
/// Run the body so many times.
struct Repeat {
  QString body;
  int runs;
};
/// Run the body again and again while the condition flag is set.
struct CondLoop {
  QString body;
};

/// Most commands ask for nothing.
using Sequel = std::variant<std::monostate, Pause, Unpause, Once, Repeat, CondLoop>;

}  // namespace kelmora::script

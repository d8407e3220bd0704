#include "terminal/core/InputHistory.h"

#include <algorithm>

namespace kelmora::terminal {

void InputHistory::record(const QString& line) {
  if (line.isEmpty() || (!inputHistory_.isEmpty() && inputHistory_.first() == line))
    return;
  inputHistory_.prepend(line);
  if (inputHistory_.size() > maximumEntries)
    inputHistory_.removeLast();
}

std::optional<QString> InputHistory::historyOlder() {
  if (inputHistory_.isEmpty())
    return std::nullopt;
  historyPosition_ = std::min(historyPosition_ + 1, static_cast<int>(inputHistory_.size()) - 1);
  return inputHistory_.at(historyPosition_);
}

std::optional<QString> InputHistory::historyNewer() {
  if (inputHistory_.isEmpty())
    return std::nullopt;
  historyPosition_ = std::max(historyPosition_ - 1, -1);
  return historyPosition_ < 0 ? QString() : inputHistory_.at(historyPosition_);
}

}  // namespace kelmora::terminal

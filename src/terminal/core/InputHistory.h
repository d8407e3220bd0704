#pragma once

#include <QStringList>
#include <optional>

namespace kelmora::terminal {

/// The lines typed so far, most recent first, and the one that the player has
/// reached with Up and Down. It is never saved.
class InputHistory {
 public:
  static constexpr int maximumEntries = 256;

  /// Stores a line unless it is empty or repeats the most recent one.
  void record(const QString& line);

  /// Goes one step back in time, if there is an older entry. Returns the text to
  /// show, or nothing while the history is empty.
  [[nodiscard]] std::optional<QString> historyOlder();

  /// Goes one step towards the present. Returns the text to show, which is empty
  /// behind the most recent entry, where browsing ends; or nothing while the
  /// history is empty.
  [[nodiscard]] std::optional<QString> historyNewer();

  void endBrowsing() { historyPosition_ = -1; }

  [[nodiscard]] const QStringList& inputHistory() const { return inputHistory_; }
  /// Index of the entry shown, or -1 while none is being browsed.
  [[nodiscard]] int historyPosition() const { return historyPosition_; }

 private:
  QStringList inputHistory_;
  int historyPosition_ = -1;
};

}  // namespace kelmora::terminal

#pragma once

#include <QStringList>
#include <optional>

namespace kelmora::terminal {

/// The lines typed so far, most recent first, and the place in them that Up
/// and Down have reached. Lives as long as the window; never saved.
class InputHistory {
 public:
  static constexpr int maximumEntries = 256;

  /// Stores a line unless it is empty or repeats the most recent one.
  void record(const QString& line);

  /// One step back in time; the text to show, or nothing when there is none.
  /// At the oldest entry it stays there.
  [[nodiscard]] std::optional<QString> historyOlder();

  /// One step towards the present; past the most recent entry browsing ends
  /// and the text is empty. Nothing while nothing has been recorded.
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

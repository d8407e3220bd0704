#pragma once

#include <QDeadlineTimer>
#include <QTimer>
#include <chrono>
#include <functional>

#include "terminal/core/ServerText.h"
#include "terminal/core/SpokenLines.h"

namespace kelmora::terminal {

/// Has the text that comes into a pane read out: each line once, in order, and of a
/// flood the last lines. Lines that come together are announced together, because
/// a screen reader may have one announcement cut off the one before it.
class PaneSpeech {
 public:
  /// From the first line until it is announced: a read often takes several packets.
  static constexpr std::chrono::milliseconds gathering{50};
  /// A line that does not go on for so long is announced although it has not ended.
  static constexpr std::chrono::milliseconds endOfPrompt{250};
  /// After an announcement, for each line in it, nothing is announced. So a flood is
  /// announced at 25 lines a second, which nobody's speech can keep up with either.
  static constexpr std::chrono::milliseconds afterEachLine{40};

  using Say = std::function<void(const QString& text)>;
  explicit PaneSpeech(Say say);

  void hear(const ServerText& text);
  /// A paragraph of its own.
  void hear(const SafeHtml& status);
  void hear(const QString& text);
  /// The player's own words, which are not read out, have ended the line.
  void hearEcho();

 private:
  void add(const SafeHtml& text);
  void plan();
  void announce(SpokenLines::Rest rest);
  [[nodiscard]] std::chrono::milliseconds silenceLeft() const;

  Say say_;
  SpokenLines lines_;
  QTimer whenLines_;
  QTimer whenRest_;
  QDeadlineTimer silence_;  ///< until then nothing is announced
};

}  // namespace kelmora::terminal

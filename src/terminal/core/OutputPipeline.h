#pragma once

#include <QByteArray>

#include "terminal/core/PipelineState.h"
#include "terminal/core/ServerText.h"

namespace kelmora::terminal {

/// What the pipeline needs from the window. The window may call the pipeline or its
/// translator again from within each of these functions.
class PipelineHost {
 public:
  virtual ~PipelineHost() = default;

  /// Called at most once for each read, as playing again only restarts the sound.
  virtual void beep() = 0;
  /// Called once for each read, also if there is no text to show.
  virtual void showServerText(ServerText text) = 0;
  /// A line, or a piece of one, up to its first NUL byte.
  virtual void parseVitals(const char* line) = 0;
  /// The same piece, with any NUL bytes.
  virtual void checkTriggers(const QByteArray& line) = 0;
};

/// Turns the server's bytes into text for the pane, and into plain lines for the
/// vitals and the triggers. A line that comes in two reads makes two pieces.
class OutputPipeline {
 public:
  [[nodiscard]] AnsiTranslator& translator() { return state_.translator; }
  [[nodiscard]] const AnsiTranslator& translator() const { return state_.translator; }
  /// Whether a "<" waits for its ">"; changes only while HTML is parsed.
  [[nodiscard]] bool insideTag() const { return state_.insideTag; }

  /// Takes one read: beeps, shows it, then hands over each line piece, first to
  /// the vitals and then to the triggers.
  void readSocketData(const QByteArray& data, const PipelineOptions& options, PipelineHost& host);

 private:
  PipelineState state_;
};

}  // namespace kelmora::terminal

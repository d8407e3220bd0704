#pragma once

#include <QByteArray>

#include "terminal/core/PipelineState.h"
#include "terminal/core/ServerText.h"

namespace kelmora::terminal {

/// What the pipeline needs from the window. Each call may lead back into the
/// pipeline or its translator.
class PipelineHost {
 public:
  virtual ~PipelineHost() = default;

  /// At most once for a read: playing again would only restart the sound.
  virtual void beep() = 0;
  /// One fragment for the end of the pane, also when it holds no text.
  virtual void showServerText(ServerText text) = 0;
  /// A line piece up to its first NUL byte.
  virtual void parseVitals(const char* line) = 0;
  /// The same line piece, whole.
  virtual void checkTriggers(const QByteArray& line) = 0;
};

/// The server's bytes on their way to the pane and, as plain lines, to the
/// vitals and the triggers. Lines are not joined across reads: a line cut by
/// the end of a read arrives as two pieces.
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

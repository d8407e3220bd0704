#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include "terminal/core/AnsiTranslator.h"
#include "terminal/core/ServerText.h"

struct PipelineOptions {
  bool displayAnsiColor = true;
  bool playBeeps = true;
  bool parseHtml = true;
  bool displayURLs = true;
};

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
  [[nodiscard]] AnsiTranslator& translator() { return translator_; }
  [[nodiscard]] const AnsiTranslator& translator() const { return translator_; }
  /// Whether a "<" waits for its ">"; changes only while HTML is parsed.
  [[nodiscard]] bool insideTag() const { return insideTag_; }

  /// Takes one read: beeps, shows its HTML, then hands over each line piece,
  /// first to the vitals and then to the triggers. The data need not outlive
  /// the first call into the host.
  void readSocketData(QByteArrayView data, const PipelineOptions& options, PipelineHost& host);

 private:
  struct Read;
  void walk(QByteArrayView data, const PipelineOptions& options, Read& read);
  void translateByte(char byte, const PipelineOptions& options, Read& read);

  AnsiTranslator translator_;
  bool insideTag_ = false;
};

#pragma once

#include "terminal/core/ByteWalk.h"

namespace kelmora::terminal {

/// Turns a read into HTML. Angle brackets that are text, and tabs, are written as
/// placeholders first and replaced when the links have been made.
class HtmlSink final : public ReadSink {
 public:
  /// Whether the server's tags are parsed, or shown as text.
  enum class Tags { Parsed, Shown };

  HtmlSink(qsizetype bytes, Tags tags);

  [[nodiscard]] qsizetype takeRun(QByteArrayView rest);
  void addByte(char byte, bool insideTag);
  void endLine();
  void openSpan(const ColourSpan& span) override { html_ += span.html; }
  void addBareColour(QByteArrayView colour) override { html_ += colour; }

  /// Decoding drops a byte order mark at the very beginning of a text. With this byte
  /// before it, a mark is not at the beginning and is kept.
  static constexpr char markGuard = '\n';

  /// All of the read's HTML, not yet filtered by safeMarkup().
  [[nodiscard]] QString html(bool withLinks) &&;

 private:
  Tags tags_;
  ByteBuffer html_;
};

}  // namespace kelmora::terminal

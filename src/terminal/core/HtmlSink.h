#pragma once

#include "terminal/core/ByteWalk.h"

namespace kelmora::terminal {

/// Makes HTML of a read, in UTF-8. Angle brackets of plain text and the blanks of
/// a TAB stay placeholders until the links are made.
class HtmlSink final : public ReadSink {
 public:
  /// What is between "<" and ">" is markup where the server's tags are parsed.
  enum class Tags { Parsed, Shown };

  HtmlSink(qsizetype bytes, Tags tags);

  [[nodiscard]] qsizetype takeRun(QByteArrayView rest);
  void addByte(char byte, bool insideTag);
  void endLine();
  void openSpan(const ColourSpan& span) override { html_ += span.html; }
  void addBareColour(QByteArrayView colour) override { html_ += colour; }

  /// A mark of byte order is dropped at the very beginning of a text alone: behind
  /// such a byte there is one.
  static constexpr char keepsMark = '\n';

  /// The HTML as the pane gets it, but for what may not pass.
  [[nodiscard]] QString html(bool withLinks) &&;

 private:
  Tags tags_;
  ByteBuffer html_;
};

}  // namespace kelmora::terminal

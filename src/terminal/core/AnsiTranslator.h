#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <array>
#include <optional>

#include "terminal/core/ByteBuffer.h"

/// Turns the server's colour sequences into HTML span openings. Spans are only
/// opened, never closed: a later one inside an earlier one wins.
class AnsiTranslator {
 public:
  /// Eight colour texts such as "#660000", in the order black, red, green,
  /// yellow, blue, magenta, cyan, white.
  using ColourTexts = std::array<QByteArray, 8>;
  static constexpr int white = 7;

  enum class Colours { Shown, Stripped };

  /// Until the first call every span is empty.
  /// Returns to the reset colours; whether bold is on stays as it is.
  void buildColourSpans(const ColourTexts& normalColour, const ColourTexts& boldColour);
  void clearBold() { boldActive_ = false; }

  /// Reads one sequence. On entry index is at the ESC byte, or one before the
  /// first byte (so possibly -1) when a sequence cut by the end of the last
  /// read is resumed; on return it is at the last byte consumed. Span openings
  /// are appended to html, unless the colours are stripped.
  void translateEscape(qsizetype& index, QByteArrayView data, ByteBuffer& html, Colours colours);

  /// True when the data ended inside a sequence: the next read resumes it.
  [[nodiscard]] bool escapePending() const { return escapePending_; }
  [[nodiscard]] bool boldActive() const { return boldActive_; }
  /// The text that the next read begins with, to reopen its colour.
  [[nodiscard]] const QByteArray& currentSpan() const { return currentSpan_; }
  /// The span that opens a normal colour, 0 (black) to 7 (white).
  [[nodiscard]] const QByteArray& normalSpan(int colour) const;

 private:
  enum class Extended { No, Foreground, Background };
  using Spans = std::array<QByteArray, 8>;

  /// Answers whether a palette index follows.
  [[nodiscard]] Extended applyCode(quint8 code, ByteBuffer& html);
  void applyReset(ByteBuffer& html);
  void applyBold(ByteBuffer& html);
  void applyForeground(quint8 colour, ByteBuffer& html);
  void applyBackground(quint8 colour, ByteBuffer& html);
  void applyPalette(Extended extended, int index, ByteBuffer& html);

  Spans normalSpans_;
  Spans boldSpans_;
  Spans backgroundSpans_;
  QByteArray resetSpan_;
  QByteArray currentSpan_;
  /// Which normal colour the foreground is; nothing after a palette colour.
  std::optional<quint8> currentForeground_ = quint8{white};
  bool boldActive_ = false;
  bool escapePending_ = false;
};

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <array>
#include <memory>
#include <optional>

#include "terminal/core/ByteBuffer.h"
#include "terminal/core/OpenSpans.h"

/// Turns the server's colour sequences into HTML span openings. Spans are only
/// opened, never closed: a later one inside an earlier one wins.
///
/// A copy is cheap and stands for the state at that moment.
class AnsiTranslator {
 public:
  /// Eight colour texts such as "#660000", in the order black, red, green,
  /// yellow, blue, magenta, cyan, white.
  using ColourTexts = std::array<QByteArray, 8>;
  static constexpr int white = 7;

  enum class Colours { Shown, Stripped };

  AnsiTranslator();

  /// Until the first call every span is empty.
  /// Returns to the reset colours; whether bold is on stays as it is.
  void buildColourSpans(const ColourTexts& normalColour, const ColourTexts& boldColour);
  void clearBold() { boldActive_ = false; }

  /// Reads one sequence. On entry index is at the ESC byte, or one before the
  /// first byte (so possibly -1) when a sequence cut by the end of the last
  /// read is resumed; on return it is at the last byte consumed. Span openings
  /// are appended to html, unless the colours are stripped.
  template <typename Html>  // ByteBuffer or OpenSpans
  void translateEscape(qsizetype& index, QByteArrayView data, Html& html, Colours colours);

  /// True when the data ended inside a sequence: the next read resumes it.
  [[nodiscard]] bool escapePending() const { return escapePending_; }
  [[nodiscard]] bool boldActive() const { return boldActive_; }
  /// The text that the next read begins with, to reopen its colour. It lives
  /// until the colours are built anew.
  [[nodiscard]] QByteArrayView currentSpan() const { return currentSpan_; }
  /// Whether every colour is "#" and six digits, as those of the palette are.
  [[nodiscard]] bool hasPlainColours() const { return spans_->plain; }
  /// The span that opens a normal colour, 0 (black) to 7 (white).
  [[nodiscard]] const QByteArray& normalSpan(int colour) const;

 private:
  enum class Extended { No, Foreground, Background };
  struct Spans {
    std::array<QByteArray, 8> normal;
    std::array<QByteArray, 8> bold;
    std::array<QByteArray, 8> background;
    QByteArray reset;
    bool plain = true;
  };

  /// Answers whether a palette index follows.
  template <typename Html>
  [[nodiscard]] Extended applyCode(quint8 code, Html& html);
  template <typename Html>
  void applyPalette(Extended extended, int index, Html& html);

  /// Never changed, so that copies can share them.
  std::shared_ptr<const Spans> spans_;
  /// One of the spans, or a text of the palette.
  QByteArrayView currentSpan_;
  /// Which normal colour the foreground is; nothing after a palette colour.
  std::optional<quint8> currentForeground_ = quint8{white};
  bool boldActive_ = false;
  bool escapePending_ = false;
};

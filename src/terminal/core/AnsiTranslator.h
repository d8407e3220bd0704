#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <array>
#include <memory>
#include <optional>

#include "terminal/core/ColourSpan.h"

namespace kelmora::terminal {

/// Turns the server's colour sequences into spans. Spans are opened and never
/// closed; a later one is inside the earlier ones, so its colours apply.
///
/// Copies are cheap: they save the state so that a read can be tried twice.
class AnsiTranslator {
 public:
  /// Eight colour texts such as "#660000", in the order black, red, green,
  /// yellow, blue, magenta, cyan, white.
  using ColourTexts = std::array<QByteArray, 8>;
  static constexpr int white = 7;

  enum class Colours { Shown, Stripped };

  AnsiTranslator();

  /// Sets the colours. Until the first call every span is empty. The reset colours
  /// become current; whether bold is on stays as it is.
  void buildColourSpans(const ColourTexts& normalColour, const ColourTexts& boldColour);
  void clearBold() { boldActive_ = false; }

  /// Reads one sequence. On entry index is at the ESC byte, or one before the
  /// first byte (so possibly -1) when a sequence cut by the end of the last
  /// read is resumed; on return it is at the last byte consumed. Spans go to the
  /// sink, unless the colours are stripped.
  void translateEscape(qsizetype& index, QByteArrayView data, SpanSink& sink, Colours colours);
  /// Sends what a read begins with: the current span, or the bare text of a palette
  /// colour in its place.
  void reopen(SpanSink& sink) const;

  /// True when the data ended inside a sequence: the next read resumes it.
  [[nodiscard]] bool escapePending() const { return escapePending_; }
  [[nodiscard]] bool boldActive() const { return boldActive_; }
  /// The text that the next read begins with, to reopen its colour. It lives
  /// until the colours are built anew.
  [[nodiscard]] QByteArrayView currentSpan() const;
  /// The span that opens a normal colour, 0 (black) to 7 (white).
  [[nodiscard]] const QByteArray& normalSpan(int colour) const;

 private:
  enum class Extended { No, Foreground, Background };
  struct Spans {
    std::array<ColourSpan, 8> normalSpan;
    std::array<ColourSpan, 8> boldSpan;
    std::array<ColourSpan, 8> backgroundSpan;
    ColourSpan resetSpan;
  };

  /// Returns whether a palette index follows the code.
  [[nodiscard]] Extended applyCode(quint8 code, SpanSink& sink);
  void applyPalette(Extended extended, int index, SpanSink& sink);

  /// Shared by all copies, so it is replaced and never changed.
  std::shared_ptr<const Spans> spans_;
  /// One of spans_; null where bareColour_ takes its place.
  const ColourSpan* currentSpan_ = nullptr;
  /// The text of a palette colour, such as "#ff0000".
  QByteArrayView bareColour_;
  /// The normal colour, 0 to 7, that bold makes bold; nothing after a palette colour.
  std::optional<quint8> currentForeground_ = quint8{white};
  bool boldActive_ = false;
  bool escapePending_ = false;
};

}  // namespace kelmora::terminal

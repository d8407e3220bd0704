#pragma once

#include <QByteArray>
#include <QString>

namespace kelmora::demo {

/// Words on their way to and from a player.
enum class Ink { Plain, Red, Green, Yellow, Blue, Magenta, Cyan, White };

/// No line of the world is wider than this, in columns.
inline constexpr int kLineWidth = 78;

/// An author's UTF-8 text, in which `back quotes` light up a word to type.
[[nodiscard]] QString prose(const char* utf8);

/// `text` in a bright colour, closed again, so that nothing leaks past it.
[[nodiscard]] QString paint(Ink ink, const QString& text);

/// `text` wrapped, painted line by line and ended with "\r\n". A "\n" in the
/// text starts a new line; a line that fits keeps its spaces as they are.
[[nodiscard]] QString paragraph(const QString& text, Ink ink = Ink::Plain);

/// The same for words a player chose: what does not fit the first line goes on
/// indented, so that nobody can make a line of the world's own out of it.
[[nodiscard]] QString speech(const QString& text, Ink ink);

/// Columns that `text` takes: wide characters count two, marks none.
[[nodiscard]] int columns(const QString& text);

/// What a player typed, made harmless: decoded as UTF-8, without control or
/// direction characters, blanks made spaces, trimmed.
[[nodiscard]] QString cleaned(const QByteArray& line);

/// The first word of `text` in lower case, and the rest without outer blanks.
struct WordAndRest {
  QString word;
  QString rest;
};
[[nodiscard]] WordAndRest firstWord(const QString& text);

/// A whole decimal number, cut to 32 bits at either end; `fallback` for anything else.
[[nodiscard]] int wholeNumber(const QString& text, int fallback);

}  // namespace kelmora::demo

#include "demo/DemoText.h"

#include <QStringList>
#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace kelmora::demo {

namespace {

// Lights a word up inside prose. Players cannot type it: cleaned() drops it.
constexpr QChar kLight(u'\x01');

// One code per sequence: clients exist that pile the digits of a sequence's
// parameters up, and to them "1;31" is no red.
QString opening(Ink ink) {
  static constexpr std::array<const char*, 8> kCodes{
      "",
      "\x1b[0m\x1b[1m\x1b[31m",
      "\x1b[0m\x1b[1m\x1b[32m",
      "\x1b[0m\x1b[1m\x1b[33m",
      "\x1b[0m\x1b[1m\x1b[34m",
      "\x1b[0m\x1b[1m\x1b[35m",
      "\x1b[0m\x1b[1m\x1b[36m",
      "\x1b[0m\x1b[1m\x1b[37m",
  };
  return QString::fromLatin1(kCodes[static_cast<std::size_t>(ink)]);
}

int columnsOf(char32_t c) {
  struct Range {
    char32_t first;
    char32_t last;
  };
  static constexpr std::array<Range, 9> kWide{{{0x1100, 0x115F},
                                               {0x2E80, 0xA4CF},
                                               {0xAC00, 0xD7A3},
                                               {0xF900, 0xFAFF},
                                               {0xFE30, 0xFE6F},
                                               {0xFF00, 0xFF60},
                                               {0xFFE0, 0xFFE6},
                                               {0x1F300, 0x1FAFF},
                                               {0x20000, 0x3FFFD}}};
  if (c == kLight.unicode() || QChar::isMark(c))
    return 0;
  const bool wide = std::any_of(kWide.begin(), kWide.end(),
                                [c](const Range& r) { return c >= r.first && c <= r.last; });
  return wide ? 2 : 1;
}

// The longest beginning of `text` that fits, never cut inside a character.
qsizetype lengthThatFits(const QString& text, int width) {
  int used = 0;
  qsizetype at = 0;
  while (at < text.size()) {
    const bool pair = text.at(at).isHighSurrogate() && at + 1 < text.size();
    const char32_t c = pair ? QChar::surrogateToUcs4(text.at(at), text.at(at + 1))
                            : char32_t{text.at(at).unicode()};
    used += columnsOf(c);
    if (used > width)
      break;
    at += pair ? 2 : 1;
  }
  return at;
}

QStringList wrapped(const QString& line, const QString& hanging = QString()) {
  QStringList lines;
  QString rest = line;
  for (;;) {
    const qsizetype fits = lengthThatFits(rest, kLineWidth);
    if (fits == rest.size())
      break;
    const qsizetype blank = rest.lastIndexOf(u' ', fits);
    const qsizetype cut = blank > hanging.size() ? blank : fits;
    lines.append(rest.first(cut));
    rest = hanging + rest.sliced(cut).trimmed();
  }
  lines.append(rest);
  return lines;
}

// `lit` goes on from line to line: a lit phrase may be wrapped in its middle.
QString painted(const QString& line, Ink ink, bool& lit) {
  QString result;
  const QStringList parts = line.split(kLight);
  for (qsizetype i = 0; i < parts.size(); ++i) {
    if (i > 0)
      lit = !lit;
    result += paint(lit ? Ink::Cyan : ink, parts.at(i));
  }
  return result;
}

bool turnsDirection(char32_t c) {
  return (c >= 0x200E && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

QString prose(const char* utf8) {
  return QString::fromUtf8(utf8).replace(u'`', kLight);
}

QString paint(Ink ink, const QString& text) {
  if (ink == Ink::Plain || text.isEmpty())
    return text;
  return opening(ink) + text + QStringLiteral("\x1b[0m");
}

QString paragraph(const QString& text, Ink ink) {
  QString result;
  bool lit = false;
  for (const QString& line : text.split(u'\n'))
    for (const QString& piece : wrapped(line))
      result += painted(piece, ink, lit) + QStringLiteral("\r\n");
  return result;
}

QString speech(const QString& text, Ink ink) {
  QString result;
  for (const QString& piece : wrapped(text, QStringLiteral("  ")))
    result += paint(ink, piece) + QStringLiteral("\r\n");
  return result;
}

int columns(const QString& text) {
  int sum = 0;
  for (const char32_t c : text.toUcs4())
    sum += columnsOf(c);
  return sum;
}

QString cleaned(const QByteArray& line) {
  QString result;
  for (const QChar c : QString::fromUtf8(line)) {
    if (c.isSpace())
      result += u' ';
    else if (c.category() != QChar::Other_Control && !turnsDirection(c.unicode()))
      result += c;
  }
  return result.trimmed();
}

WordAndRest firstWord(const QString& text) {
  const QString trimmed = text.trimmed();
  const qsizetype blank = trimmed.indexOf(u' ');
  if (blank < 0)
    return {trimmed.toLower(), QString()};
  return {trimmed.first(blank).toLower(), trimmed.sliced(blank).trimmed()};
}

int wholeNumber(const QString& text, int fallback) {
  static constexpr qint64 kLeast = std::numeric_limits<int>::min();
  static constexpr qint64 kMost = std::numeric_limits<int>::max();
  const qsizetype start = text.startsWith(u'-') ? 1 : 0;
  if (start == text.size())
    return fallback;
  qint64 value = 0;
  for (qsizetype i = start; i < text.size(); ++i) {
    const char16_t c = text.at(i).unicode();
    if (c < u'0' || c > u'9')
      return fallback;
    value = std::min(value * 10 + (c - u'0'), kMost + 1);
  }
  return static_cast<int>(std::clamp(start == 1 ? -value : value, kLeast, kMost));
}

}  // namespace kelmora::demo

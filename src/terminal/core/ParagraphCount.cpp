#include "terminal/core/ParagraphCount.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "terminal/core/SafeMarkup.h"

namespace {

using Weights = std::array<qint8, 256>;

/// What a byte of a plain line adds to the characters that it shows. Bytes that
/// continue a character add none, nor do controls. An entity of up to ten bytes
/// may show one character, and of doubled beginnings of an address, "http://",
/// "https://" and "www.", one alone is left: "&", ":" and "w" count against the
/// rest.
constexpr Weights makeWeights() {
  Weights weights{};
  for (std::size_t byte = 0x20; byte < 0x7F; ++byte)
    weights[byte] = 1;
  for (std::size_t byte = 0xC3; byte < 0x100; ++byte)
    weights[byte] = 1;
  // The blanks beyond ASCII begin with 0xC2 or one of these, but for some of
  // their characters it takes the next byte to tell.
  weights[0xE1] = 0;
  weights[0xE2] = 0;
  weights[0xE3] = 0;
  weights[' '] = 0;
  weights['&'] = -8;
  weights[':'] = -7;
  weights['w'] = -1;
  return weights;
}

constexpr Weights weights = makeWeights();

/// Blanks in a row may be one, with colours between them: a blank counts behind
/// a byte that is seen.
constexpr Weights makeSeen() {
  Weights seen{};
  for (std::size_t byte = 0x21; byte < 0x7F; ++byte)
    seen[byte] = 1;
  return seen;
}

constexpr Weights seen = makeSeen();

/// Whether two bytes begin a character of those that makeWeights() left open
/// and is no blank.
bool beginsWideCharacter(unsigned char first, unsigned char second) {
  constexpr unsigned char kana = 0xE3;
  constexpr unsigned char symbols = 0xE2;
  return (first == kana && second > 0x80) || (first == symbols && second > 0x81);
}

qsizetype weightOf(QByteArrayView line) {
  qsizetype sum = 0;
  unsigned char previous = 0;
  for (const char character : line) {
    const auto byte = static_cast<unsigned char>(character);
    // Without a branch: one word in six would take it by surprise.
    sum += weights[byte] + (static_cast<qint8>(byte == ' ') & seen[previous]);
    if (previous > 0x7F && beginsWideCharacter(previous, byte))
      ++sum;
    previous = byte;
  }
  return sum;
}

/// The characters that end a paragraph in the middle of an insertion are far up,
/// so as an entity they take some digits.
bool hasLongNumber(QByteArrayView text) {
  constexpr qsizetype longNumber = 4;
  for (qsizetype start = text.indexOf('&'); start >= 0; start = text.indexOf('&', start + 1)) {
    const QByteArrayView rest = text.sliced(start + 1);
    if (!rest.startsWith('#'))
      continue;
    const auto end = std::find_if_not(rest.begin() + 1, rest.end(), [](char byte) {
      return std::isalnum(static_cast<unsigned char>(byte)) != 0;
    });
    if (end - rest.begin() - 1 >= longNumber)
      return true;
  }
  return false;
}

/// Whether a text may have paragraphs of its own: by U+2029, or by the toolkit's
/// marks of a frame, U+FDD0 and U+FDD1.
bool mayEndParagraphs(QByteArrayView plain) {
  const std::string_view text(plain.data(), static_cast<std::size_t>(plain.size()));
  return text.find("\xE2\x80\xA9") != std::string_view::npos ||
         text.find("\xEF\xB7") != std::string_view::npos || hasLongNumber(plain);
}

bool mayEndParagraphs(QStringView html) {
  constexpr QChar frameStart(0xFDD0);
  constexpr QChar frameEnd(0xFDD1);
  return html.contains(QChar::ParagraphSeparator) || html.contains(frameStart) ||
         html.contains(frameEnd) || (html.contains(u"&#") && hasLongNumber(html.toUtf8()));
}

constexpr qsizetype longestEntity = 9;

/// The same for HTML, where blanks collapse in more ways.
qsizetype visibleIn(QStringView text) {
  qsizetype sum = 0;
  for (const QChar character : text)
    sum += character == u'&' ? -longestEntity : character.isSpace() ? 0 : 1;
  return sum;
}

}  // namespace

void ParagraphCount::addLines(QByteArrayView plain) {
  if (mayEndParagraphs(plain)) {
    length_ = 0;
    return;
  }
  for (;;) {
    const qsizetype end = plain.indexOf('\n');
    // The blank that begins a line is not shown.
    addPart(weightOf(end < 0 ? plain : plain.first(end)) - 1);
    if (end < 0)
      return;
    endLine();
    plain = plain.sliced(end + 1);
  }
}

bool ParagraphCount::addMarkup(QStringView html) {
  bool isInlineOnly = !mayEndParagraphs(html);
  const qint64 before = ended_;
  while (!html.isEmpty()) {
    const qsizetype start = html.indexOf(u'<');
    addPart(visibleIn(start < 0 ? html : html.first(start)));
    if (start < 0)
      break;
    const qsizetype end = html.indexOf(u'>', start);
    QStringView tag = html.sliced(start + 1, (end < 0 ? html.size() : end) - start - 1);
    if (tag.startsWith(u'/'))
      tag = tag.sliced(1);
    tag = tag.first(std::find(tag.begin(), tag.end(), u' ') - tag.begin());
    if (tag == u"br")
      endLine();
    isInlineOnly = isInlineOnly && isInlineTag(tag);
    html = end < 0 ? QStringView() : html.sliced(end + 1);
  }
  if (!isInlineOnly) {
    ended_ = before;
    length_ = 0;
  }
  return isInlineOnly;
}

void ParagraphCount::addParagraphs(qint64 count) {
  if (count == 0)
    return;
  ended_ += count;
  length_ = 0;
}

void ParagraphCount::addPart(qsizetype characters) {
  length_ += std::max<qsizetype>(characters, 0);
}

void ParagraphCount::endLine() {
  if (length_ < longParagraph_) {
    ++length_;
    return;
  }
  ++ended_;
  length_ = 0;
}

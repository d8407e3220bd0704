#include "terminal/core/ParagraphCount.h"

#include <algorithm>
#include <array>

#include "terminal/core/SafeMarkup.h"

namespace {

using Weights = std::array<qint8, 256>;

/// What a byte of a plain line adds to the characters that it shows. Bytes that
/// continue a character add none, nor do controls. An entity of up to ten bytes
/// may show one character, and of a doubled "http://" one is dropped: their "&"
/// and ":" count against the rest.
constexpr Weights makeWeights() {
  Weights weights{};
  for (std::size_t byte = 0x20; byte < 0x7F; ++byte)
    weights[byte] = 1;
  for (std::size_t byte = 0xC0; byte < 0x100; ++byte)
    weights[byte] = 1;
  weights['&'] = -8;
  weights[':'] = -6;
  return weights;
}

constexpr Weights weights = makeWeights();

qsizetype weightOf(QByteArrayView line) {
  qsizetype sum = 0;
  for (const char byte : line)
    sum += weights[static_cast<unsigned char>(byte)];
  return sum;
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
  bool isInlineOnly = true;
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

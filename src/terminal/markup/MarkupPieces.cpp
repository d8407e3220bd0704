#include "terminal/markup/MarkupPieces.h"

#include <algorithm>
#include <utility>

namespace kelmora::terminal {

namespace {

/// A piece that is so many times too long ends at a tag if there is no word to divide.
constexpr qsizetype mostLengths = 2;

/// In characters: the importer does not look further for the end of an entity.
constexpr qsizetype longestEntity = 10;

/// Whether a text may end paragraphs: with U+2029, or with U+FDD0 or U+FDD1, by which
/// the toolkit marks frames. They may be written as numeric entities, which then have
/// at least four digits, or which the end of the text divides.
bool mayEndParagraphs(QStringView text) {
  constexpr qsizetype longNumber = 4;
  if (text.contains(QChar::ParagraphSeparator) || text.contains(QChar(0xFDD0)) ||
      text.contains(QChar(0xFDD1)) || text.endsWith(u'&'))
    return true;
  for (qsizetype at = text.indexOf(u"&#"); at >= 0; at = text.indexOf(u"&#", at + 1)) {
    const QStringView number = text.sliced(at + 2);
    const auto* const end = std::find_if_not(number.begin(), number.end(),
                                             [](QChar part) { return part.isLetterOrNumber(); });
    if (end == number.end() || end - number.begin() >= longNumber)
      return true;
  }
  return false;
}

}  // namespace

void MarkupPieces::addText(QStringView text) {
  html_ += text;
  for (const QChar character : text)
    stretch_ += character == u'&' ? 1 - longestEntity : character.isSpace() ? 0 : 1;
  facts_.isInlineOnly = facts_.isInlineOnly && !mayEndParagraphs(text);
  facts_.hasText = facts_.hasText || !text.isEmpty();
}

void MarkupPieces::addStart(const markup::TagRow& tag, QStringView attributes) {
  note(tag);
  html_.append(u'<').append(tag.name).append(attributes).append(u'>');
}

void MarkupPieces::addEnd(const markup::TagRow& tag) {
  note(tag);
  html_.append(u"</").append(tag.name).append(u'>');
}

qsizetype MarkupPieces::divisionOf(QStringView text) const {
  const qsizetype room = std::max<qsizetype>(leastLength() - length(), 0);
  for (qsizetype place = room + 1; place < text.size(); ++place)
    if (text[place - 1].isLetterOrNumber() && text[place].isLetterOrNumber() &&
        !text.first(place).last(std::min(place, longestEntity)).contains(u'&'))
      return place;
  return -1;
}

bool MarkupPieces::isOverlong() const {
  return length() >= mostLengths * leastLength();
}

bool MarkupPieces::mayEndInEntity() const {
  return QStringView(html_).last(std::min(html_.size(), longestEntity)).contains(u'&');
}

void MarkupPieces::endPiece() {
  endStretch();
  facts_.lines.push_back(std::exchange(line_, 0));
  pieces_.push_back({std::exchange(html_, {}), std::exchange(facts_, {})});
}

std::vector<MarkupPieces::Piece> MarkupPieces::take() && {
  endPiece();
  return std::move(pieces_);
}

void MarkupPieces::note(const markup::TagRow& tag) {
  endStretch();
  if (tag.name == u"br")
    facts_.lines.push_back(std::exchange(line_, 0));
  else if (tag.kind != markup::Kind::Inline && tag.kind != markup::Kind::Link)
    facts_.isInlineOnly = false;
}

void MarkupPieces::endStretch() {
  line_ += std::max<qsizetype>(std::exchange(stretch_, 0), 0);
}

qsizetype MarkupPieces::leastLength() const {
  // At least as much new text as reopened tags, so that the pieces together are at
  // most a fixed number of times as long as the whole.
  return std::max(pieceLength_, reopened_);
}

}  // namespace kelmora::terminal

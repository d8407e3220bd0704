#include "terminal/core/MarkupWriter.h"

#include <algorithm>
#include <utility>

#include "terminal/core/MarkupAttributes.h"

namespace kelmora::terminal {

using markup::Kind;

namespace {

constexpr std::size_t maximumBlockDepth = 32;

/// The importer goes through all open elements at each tag, and colour spans are never
/// closed. Without a limit, sixteen thousand of them in one read take a minute.
constexpr std::size_t maximumInlineDepth = 128;

/// A piece that is so many times too long ends at a tag if there is no word to divide.
constexpr qsizetype mostLengths = 2;

/// In characters: the importer does not look further for the end of an entity.
constexpr qsizetype longestEntity = 10;

using Edge = MarkupTag::Edge;

/// What keeps the cells of a table apart once its tags are gone.
enum class StandIn { LineBreak, HardBlank };
struct StandInRow {
  QStringView name;
  Edge edge;
  StandIn standIn;
};

constexpr std::array standIns{
    StandInRow{u"tr", Edge::Start, StandIn::LineBreak},
    StandInRow{u"table", Edge::End, StandIn::LineBreak},
    StandInRow{u"td", Edge::Start, StandIn::HardBlank},
    StandInRow{u"th", Edge::Start, StandIn::HardBlank},
};

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

void MarkupWriter::text(QStringView text) {
  if (text.isEmpty())
    return;
  writeDueSpan();
  for (qsizetype division = divisionOf(text); division > 0; division = divisionOf(text)) {
    writeText(text.first(division));
    endPiece();
    text = text.sliced(division);
  }
  writeText(text);
}

void MarkupWriter::tag(const MarkupTag& tag) {
  if (length() >= mostLengths * leastLength())
    endPiece();
  for (const StandInRow& row : standIns) {
    if (row.edge != tag.edge || row.name.compare(tag.name, Qt::CaseInsensitive) != 0)
      continue;
    if (row.standIn == StandIn::LineBreak)
      write(markup::rowNamed(u"br"), {});
    else
      text(u"&nbsp;");
  }
  const auto* row = markup::rowNamed(tag.name);
  if (!row)
    return;
  if (tag.edge == Edge::Start)
    start(row, tag.attributes);
  if (tag.edge == Edge::End || tag.closed)
    end(row);
}

std::vector<MarkupWriter::Piece> MarkupWriter::pieces() && {
  finishPiece();
  return std::move(pieces_);
}

void MarkupWriter::start(Row row, const std::vector<MarkupTag::Attribute>& attributes) {
  const QString kept = markup::safeAttributes(row->name, attributes);
  switch (row->kind) {
    case Kind::Link:
      if (kept.isEmpty())
        return;
      [[fallthrough]];
    case Kind::Inline:
      startInline(row, kept);
      return;
    case Kind::Block:
      if (openBlock(row, kept))
        write(row, kept);
      return;
    case Kind::Term:
      closeUpToTerms();
      [[fallthrough]];
    case Kind::Paragraph:
      openParagraph_ = {row, kept};
      [[fallthrough]];
    case Kind::Void:
      write(row, kept);
  }
}

void MarkupWriter::startInline(Row row, const QString& attributes) {
  if (openInlines_.size() >= maximumInlineDepth) {
    if (!mayNestDeeper(row) || attributes.isEmpty()) {
      ++count(droppedCounts_, row);
      return;
    }
    if (row->kind != Kind::Link && openInlines_.size() > firstInline() &&
        openInlines_.back().row == row) {
      OpenInline& span = openInlines_.back();
      span.attributes = markup::mergedStyle(span.attributes, attributes);
      spanIsDue_ = true;
      // Without a tag in between, an "&" before the span might form an entity with
      // the text in it.
      if (html_.last(std::min(html_.size(), longestEntity)).contains(u'&'))
        writeDueSpan();
      return;
    }
  }
  write(row, attributes);
  openInlines_.push_back({row, attributes});
}

bool MarkupWriter::mayNestDeeper(Row row) const {
  if (row->kind != Kind::Link)
    return row->name == u"span";
  return std::none_of(openInlines_.begin() + maximumInlineDepth, openInlines_.end(),
                      [](const OpenInline& open) { return open.row->kind == Kind::Link; });
}

void MarkupWriter::end(Row row) {
  switch (row->kind) {
    case Kind::Void:
      return;
    case Kind::Block:
      if (closeBlock(row))
        writeEnd(row);
      return;
    case Kind::Paragraph:
    case Kind::Term:
      if (openParagraph_ && openParagraph_->row == row)
        openParagraph_.reset();
      writeEnd(row);
      return;
    case Kind::Inline:
    case Kind::Link:
      endInline(row);
  }
}

void MarkupWriter::endInline(Row row) {
  if (qsizetype& dropped = count(droppedCounts_, row); dropped > 0) {
    --dropped;
    return;
  }
  const auto first = openInlines_.begin() + static_cast<std::ptrdiff_t>(firstInline());
  for (auto open = openInlines_.end(); open != first;)
    if ((--open)->row == row) {
      spanIsDue_ = false;  // the span ends without any text
      openInlines_.erase(open, openInlines_.end());
      break;
    }
  writeEnd(row);
}

void MarkupWriter::writeText(QStringView text) {
  html_ += text;
  for (const QChar character : text)
    stretch_ += character == u'&' ? 1 - longestEntity : character.isSpace() ? 0 : 1;
  facts_.isInlineOnly = facts_.isInlineOnly && !mayEndParagraphs(text);
  facts_.hasText = facts_.hasText || !text.isEmpty();
}

void MarkupWriter::noteTag(Row row) {
  endStretch();
  if (row->name == u"br")
    facts_.lines.push_back(std::exchange(line_, 0));
  else if (row->kind != Kind::Inline && row->kind != Kind::Link)
    facts_.isInlineOnly = false;
}

void MarkupWriter::endStretch() {
  line_ += std::max<qsizetype>(std::exchange(stretch_, 0), 0);
}

void MarkupWriter::write(Row row, const QString& attributes) {
  writeDueSpan();
  noteTag(row);
  html_.append(u'<').append(row->name).append(attributes).append(u'>');
}

void MarkupWriter::writeEnd(Row row) {
  writeDueSpan();
  noteTag(row);
  html_.append(u"</").append(row->name).append(u'>');
}

void MarkupWriter::writeDueSpan() {
  if (!std::exchange(spanIsDue_, false))
    return;
  const OpenInline& span = openInlines_.back();
  writeEnd(span.row);
  write(span.row, span.attributes);
}

bool MarkupWriter::openBlock(Row row, const QString& attributes) {
  openParagraph_.reset();
  openBlocks_.push_back({row, openInlines_.size(), attributes});
  ++count(openCounts_, row);
  return openBlocks_.size() <= maximumBlockDepth;
}

bool MarkupWriter::closeBlock(Row row) {
  openParagraph_.reset();
  if (count(openCounts_, row) == 0)
    return false;
  OpenBlock last{};
  do {
    last = openBlocks_.back();
    openBlocks_.pop_back();
    --count(openCounts_, last.row);
  } while (last.row != row);
  const bool wasWritten = openBlocks_.size() < maximumBlockDepth;
  if (wasWritten && openInlines_.size() > last.inlinesBefore) {
    spanIsDue_ = false;
    openInlines_.resize(last.inlinesBefore);
  }
  return wasWritten;
}

void MarkupWriter::closeUpToTerms() {
  spanIsDue_ = false;
  const auto isList = [](const OpenBlock& open) { return open.row->name == u"dl"; };
  while (!openBlocks_.empty() &&
         (openBlocks_.size() > maximumBlockDepth || !isList(openBlocks_.back()))) {
    --count(openCounts_, openBlocks_.back().row);
    openBlocks_.pop_back();
  }
  openInlines_.resize(firstInline());
}

std::size_t MarkupWriter::firstInline() const {
  if (openBlocks_.empty())
    return 0;
  return openBlocks_[std::min(openBlocks_.size(), maximumBlockDepth) - 1].inlinesBefore;
}

qsizetype MarkupWriter::leastLength() const {
  // At least as much new text as reopened tags, so that the pieces together are at
  // most a fixed number of times as long as the whole.
  return std::max(pieceLength_, reopened_);
}

qsizetype MarkupWriter::divisionOf(QStringView text) const {
  const qsizetype room = std::max<qsizetype>(leastLength() - length(), 0);
  for (qsizetype place = room + 1; place < text.size(); ++place)
    if (text[place - 1].isLetterOrNumber() && text[place].isLetterOrNumber() &&
        !text.first(place).last(std::min(place, longestEntity)).contains(u'&'))
      return place;
  return -1;
}

void MarkupWriter::finishPiece() {
  endStretch();
  facts_.lines.push_back(std::exchange(line_, 0));
  pieces_.push_back({std::exchange(html_, {}), std::exchange(facts_, {})});
}

void MarkupWriter::endPiece() {
  spanIsDue_ = false;
  finishPiece();
  auto open = openInlines_.cbegin();
  const auto writeInlinesBefore = [&](std::size_t end) {
    for (; open != openInlines_.cbegin() + static_cast<std::ptrdiff_t>(end); ++open)
      write(open->row, open->attributes);
  };
  for (std::size_t i = 0; i < std::min(openBlocks_.size(), maximumBlockDepth); ++i) {
    writeInlinesBefore(openBlocks_[i].inlinesBefore);
    write(openBlocks_[i].row, openBlocks_[i].attributes);
  }
  // Inline tags of the paragraph are written around it; the look is the same.
  writeInlinesBefore(openInlines_.size());
  if (openParagraph_)
    write(openParagraph_->row, openParagraph_->attributes);
  reopened_ = html_.size();
}

}  // namespace kelmora::terminal

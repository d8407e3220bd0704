#include "terminal/markup/MarkupWriter.h"

#include <algorithm>
#include <utility>

#include "terminal/markup/MarkupAttributes.h"

namespace kelmora::terminal {

using markup::Kind;

namespace {

constexpr std::size_t maximumBlockDepth = 32;

/// The importer goes through all open elements at each tag, and colour spans are never
/// closed. Without a limit, sixteen thousand of them in one read take a minute.
constexpr std::size_t maximumInlineDepth = 128;

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

bool isTarget(const MarkupTag::Attribute& attribute) {
  return attribute.name.compare(u"href", Qt::CaseInsensitive) == 0;
}

}  // namespace

void MarkupWriter::text(QStringView text) {
  if (text.isEmpty())
    return;
  writeDueSpan();
  for (qsizetype end = pieces_.divisionOf(text); end > 0; end = pieces_.divisionOf(text)) {
    pieces_.addText(text.first(end));
    endPiece();
    text = text.sliced(end);
  }
  pieces_.addText(text);
}

void MarkupWriter::tag(const MarkupTag& tag) {
  if (pieces_.isOverlong())
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
  if (!row) {
    ++losses_.forbidden;
    return;
  }
  if (tag.edge == Edge::Start)
    start(row, tag.attributes);
  if (tag.edge == Edge::End || tag.closed)
    end(row);
}

std::vector<MarkupPieces::Piece> MarkupWriter::pieces() && {
  return std::move(pieces_).take();
}

void MarkupWriter::start(Row row, const std::vector<MarkupTag::Attribute>& attributes) {
  const QString kept = markup::safeAttributes(row->name, attributes);
  switch (row->kind) {
    case Kind::Link:
      if (kept.isEmpty()) {
        losses_.links += std::any_of(attributes.begin(), attributes.end(), isTarget) ? 1 : 0;
        return;
      }
      [[fallthrough]];
    case Kind::Inline:
      startInline(row, kept);
      return;
    case Kind::Block:
      if (openBlock(row, kept))
        write(row, kept);
      else
        ++losses_.tooDeep;
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
      ++losses_.tooDeep;
      return;
    }
    if (row->kind != Kind::Link && openInlines_.size() > firstInline() &&
        openInlines_.back().row == row) {
      OpenInline& span = openInlines_.back();
      span.attributes = markup::mergedStyle(span.attributes, attributes);
      spanIsDue_ = true;
      // Without a tag in between, an "&" before the span might form an entity with
      // the text in it.
      if (pieces_.mayEndInEntity())
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

void MarkupWriter::write(Row row, const QString& attributes) {
  writeDueSpan();
  pieces_.addStart(*row, attributes);
}

void MarkupWriter::writeEnd(Row row) {
  writeDueSpan();
  pieces_.addEnd(*row);
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

void MarkupWriter::endPiece() {
  spanIsDue_ = false;
  pieces_.endPiece();
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
  pieces_.endReopening();
}

}  // namespace kelmora::terminal

#include "terminal/core/SafeMarkup.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "terminal/core/MarkupAttributes.h"
#include "terminal/core/MarkupReader.h"

namespace {

enum class Kind {
  Inline,
  /// Ends the one before it, so it does not nest.
  Paragraph,
  /// Nests, and each level costs the importer more than the one before.
  Block,
  /// Has no end tag.
  Void,
  /// Inline, and nothing without its attribute: the pane would still show an
  /// anchor.
  Link,
};

struct TagRow {
  QStringView name;
  Kind kind;
};

constexpr std::array<TagRow, 37> allowedTags{
    {{u"b", Kind::Inline},     {u"strong", Kind::Inline},    {u"i", Kind::Inline},
     {u"em", Kind::Inline},    {u"u", Kind::Inline},         {u"s", Kind::Inline},
     {u"del", Kind::Inline},   {u"big", Kind::Inline},       {u"small", Kind::Inline},
     {u"sub", Kind::Inline},   {u"sup", Kind::Inline},       {u"tt", Kind::Inline},
     {u"code", Kind::Inline},  {u"kbd", Kind::Inline},       {u"samp", Kind::Inline},
     {u"var", Kind::Inline},   {u"cite", Kind::Inline},      {u"dfn", Kind::Inline},
     {u"font", Kind::Inline},  {u"span", Kind::Inline},      {u"a", Kind::Link},
     {u"p", Kind::Paragraph},  {u"li", Kind::Paragraph},     {u"div", Kind::Block},
     {u"center", Kind::Block}, {u"pre", Kind::Block},        {u"h1", Kind::Block},
     {u"h2", Kind::Block},     {u"h3", Kind::Block},         {u"h4", Kind::Block},
     {u"h5", Kind::Block},     {u"h6", Kind::Block},         {u"ul", Kind::Block},
     {u"ol", Kind::Block},     {u"blockquote", Kind::Block}, {u"br", Kind::Void},
     {u"hr", Kind::Void}}};

constexpr std::size_t maximumBlockDepth = 32;

/// The importer walks all open elements at each tag, and colour spans are never
/// closed: without a limit, sixteen thousand of them in one read take a minute.
constexpr std::size_t maximumInlineDepth = 128;

using Edge = MarkupTag::Edge;

/// What keeps the cells of a table apart once its tags are gone.
struct StandInRow {
  QStringView name;
  Edge edge;
  QStringView html;
};

constexpr std::array standIns{
    StandInRow{u"tr", Edge::Start, u"<br>"},
    StandInRow{u"table", Edge::End, u"<br>"},
    StandInRow{u"td", Edge::Start, u"&nbsp;"},
    StandInRow{u"th", Edge::Start, u"&nbsp;"},
};

/// Null when there is none.
const TagRow* rowNamed(QStringView name) {
  const auto found = std::find_if(
      allowedTags.begin(), allowedTags.end(),
      [name](const TagRow& row) { return row.name.compare(name, Qt::CaseInsensitive) == 0; });
  return found == allowedTags.end() ? nullptr : &*found;
}

class MarkupWriter {
 public:
  void text(QStringView text);
  void tag(const MarkupTag& tag);
  [[nodiscard]] QString html() && { return std::move(html_); }

 private:
  using Row = const TagRow*;
  struct OpenInline {
    Row row;
    QString attributes;
  };
  struct OpenBlock {
    Row row;
    std::size_t inlinesBefore;
  };

  void start(Row row, const std::vector<MarkupTag::Attribute>& attributes);
  void startInline(Row row, const QString& attributes);
  /// Beyond the limit there is room for one link, and for a span, which takes
  /// the place of a span right around it.
  [[nodiscard]] bool mayNestDeeper(Row row) const;
  void end(Row row);
  void endInline(Row row);
  void write(Row row, const QString& attributes);
  void writeEnd(Row row);
  /// Keeps count of open blocks as the importer does, or with more open than
  /// it has: an end tag closes all that its block holds.
  bool opens(Row row);
  bool closes(Row row);
  /// Where the inlines of the innermost block that was written begin.
  [[nodiscard]] std::size_t firstInline() const;
  [[nodiscard]] qsizetype& count(std::array<qsizetype, allowedTags.size()>& counts, Row row) {
    return counts[static_cast<std::size_t>(row - allowedTags.data())];
  }

  QString html_;
  std::vector<OpenBlock> openBlocks_;
  std::vector<OpenInline> openInlines_;
  std::array<qsizetype, allowedTags.size()> openCounts_{};
  /// Inline start tags beyond the limit, whose end tags are left out too.
  std::array<qsizetype, allowedTags.size()> droppedCounts_{};
  /// The innermost span has changed its attributes, and no text came since.
  bool spanIsDue_ = false;
};

void MarkupWriter::text(QStringView text) {
  if (text.isEmpty())
    return;
  if (spanIsDue_) {
    const OpenInline& span = openInlines_.back();
    spanIsDue_ = false;
    writeEnd(span.row);
    write(span.row, span.attributes);
  }
  html_ += text;
}

void MarkupWriter::tag(const MarkupTag& tag) {
  for (const StandInRow& row : standIns)
    if (row.edge == tag.edge && row.name.compare(tag.name, Qt::CaseInsensitive) == 0)
      text(row.html);
  const auto* row = rowNamed(tag.name);
  if (!row)
    return;
  if (tag.edge == Edge::Start)
    start(row, tag.attributes);
  if (tag.edge == Edge::End || tag.closed)
    end(row);
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
      if (!opens(row))
        return;
      [[fallthrough]];
    case Kind::Paragraph:
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
    if (openInlines_.size() > firstInline() && openInlines_.back().row == row) {
      OpenInline& span = openInlines_.back();
      span.attributes = markup::mergedStyle(span.attributes, attributes);
      spanIsDue_ = true;
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
      if (closes(row))
        writeEnd(row);
      return;
    case Kind::Paragraph:
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
      spanIsDue_ = false;  // it ends here, with nothing in it
      openInlines_.erase(open, openInlines_.end());
      break;
    }
  writeEnd(row);
}

void MarkupWriter::write(Row row, const QString& attributes) {
  text(u"<");
  html_.append(row->name).append(attributes).append(u'>');
}

void MarkupWriter::writeEnd(Row row) {
  text(u"</");
  html_.append(row->name).append(u'>');
}

bool MarkupWriter::opens(Row row) {
  openBlocks_.push_back({row, openInlines_.size()});
  ++count(openCounts_, row);
  return openBlocks_.size() <= maximumBlockDepth;
}

bool MarkupWriter::closes(Row row) {
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

std::size_t MarkupWriter::firstInline() const {
  if (openBlocks_.empty())
    return 0;
  return openBlocks_[std::min(openBlocks_.size(), maximumBlockDepth) - 1].inlinesBefore;
}

}  // namespace

QString safeMarkup(const QString& html) {
  MarkupReader reader(html);
  MarkupWriter writer;
  while (true) {
    writer.text(reader.text());
    if (reader.atEnd())
      break;
    if (const auto tag = reader.tag())
      writer.tag(*tag);
    else
      writer.text(u"&lt;");
  }
  return std::move(writer).html();
}

bool isInlineTag(QStringView name) {
  const auto* row = rowNamed(name);
  return row && (row->kind == Kind::Inline || row->kind == Kind::Link || row->name == u"br");
}

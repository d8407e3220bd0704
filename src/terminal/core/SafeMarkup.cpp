#include "terminal/core/SafeMarkup.h"

#include <QRegularExpression>
#include <QStringList>
#include <QStringTokenizer>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "terminal/core/MarkupReader.h"

namespace {

enum class Kind {
  Inline,
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

/// A paragraph or list item ends the one before, so it does not nest.
constexpr std::array<TagRow, 37> allowedTags{
    {{u"b", Kind::Inline},     {u"strong", Kind::Inline},    {u"i", Kind::Inline},
     {u"em", Kind::Inline},    {u"u", Kind::Inline},         {u"s", Kind::Inline},
     {u"del", Kind::Inline},   {u"big", Kind::Inline},       {u"small", Kind::Inline},
     {u"sub", Kind::Inline},   {u"sup", Kind::Inline},       {u"tt", Kind::Inline},
     {u"code", Kind::Inline},  {u"kbd", Kind::Inline},       {u"samp", Kind::Inline},
     {u"var", Kind::Inline},   {u"cite", Kind::Inline},      {u"dfn", Kind::Inline},
     {u"font", Kind::Inline},  {u"span", Kind::Inline},      {u"a", Kind::Link},
     {u"p", Kind::Inline},     {u"li", Kind::Inline},        {u"div", Kind::Block},
     {u"center", Kind::Block}, {u"pre", Kind::Block},        {u"h1", Kind::Block},
     {u"h2", Kind::Block},     {u"h3", Kind::Block},         {u"h4", Kind::Block},
     {u"h5", Kind::Block},     {u"h6", Kind::Block},         {u"ul", Kind::Block},
     {u"ol", Kind::Block},     {u"blockquote", Kind::Block}, {u"br", Kind::Void},
     {u"hr", Kind::Void}}};

constexpr std::size_t maximumBlockDepth = 32;

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

/// The values of a style declaration; without words it is a colour.
struct DeclarationRow {
  QStringView name;
  QStringView words;
};

constexpr std::array allowedDeclarations{
    DeclarationRow{u"color", {}},
    DeclarationRow{u"background-color", {}},
    DeclarationRow{u"font-weight",
                   u"normal bold bolder lighter 100 200 300 400 500 600 700 800 900"},
    DeclarationRow{u"font-style", u"normal italic oblique"},
    DeclarationRow{u"text-decoration", u"none underline overline line-through"},
};

/// Null when there is none.
template <typename Row, std::size_t size>
const Row* rowNamed(const std::array<Row, size>& rows, QStringView name) {
  const auto found = std::find_if(rows.begin(), rows.end(), [name](const Row& row) {
    return row.name.compare(name, Qt::CaseInsensitive) == 0;
  });
  return found == rows.end() ? nullptr : &*found;
}

bool isColour(QStringView value) {
  static const QRegularExpression colour(
      QStringLiteral(R"(\A(?:#?[a-zA-Z0-9]{1,32}|(?:[rR][gG][bB]|[hH][sS][vVlL])[aA]?)"
                     R"(\( *[0-9.]{1,6}%?(?: *, *[0-9.]{1,6}%?){2,3} *\))\z)"));
  return colour.match(value.toString()).hasMatch();
}

bool areWordsOf(QStringView known, QStringView value) {
  const auto knownWords = known.split(u' ');
  const auto words = value.split(u' ', Qt::SkipEmptyParts);
  return !words.empty() && std::all_of(words.begin(), words.end(), [&](QStringView word) {
    return std::any_of(knownWords.begin(), knownWords.end(), [word](QStringView one) {
      return one.compare(word, Qt::CaseInsensitive) == 0;
    });
  });
}

/// These answer what of an attribute's value may stay, nothing if none.
QString colourValue(QStringView value) {
  return isColour(value.trimmed()) ? value.trimmed().toString() : QString();
}

QString faceValue(QStringView value) {
  static const QRegularExpression face(QStringLiteral(R"(\A[\p{L}\p{N} ,._-]{1,64}\z)"));
  return face.match(value.toString()).hasMatch() ? value.toString() : QString();
}

QString styleValue(QStringView value) {
  QStringList kept;
  for (const QStringView declaration : value.tokenize(u';')) {
    const qsizetype colon = declaration.indexOf(u':');
    if (colon < 0)
      continue;
    const auto* row = rowNamed(allowedDeclarations, declaration.first(colon).trimmed());
    const QStringView words = declaration.sliced(colon + 1).trimmed();
    if (row && (row->words.empty() ? isColour(words) : areWordsOf(row->words, words)))
      kept += row->name.toString() + u':' + words.toString();
  }
  return kept.join(u';');
}

/// A link leads to the web or to a letter, never to a file of the player's.
QString linkValue(QStringView value) {
  const auto* begin = std::find_if_not(value.begin(), value.end(), [](QChar character) {
    return character.isSpace() || character.category() == QChar::Other_Control;
  });
  const QStringView link = value.sliced(begin - value.begin());
  constexpr std::array<QStringView, 3> schemes{u"http:", u"https:", u"mailto:"};
  const auto scheme = std::find_if(schemes.begin(), schemes.end(), [link](QStringView one) {
    return link.startsWith(one, Qt::CaseInsensitive);
  });
  // Written anew too: letters beyond ASCII may pass for the same ones.
  return scheme == schemes.end() ? QString()
                                 : scheme->toString().append(link.sliced(scheme->size()));
}

struct AttributeRow {
  QStringView tag;
  QStringView name;
  QString (*allowedPart)(QStringView value);
};

constexpr std::array allowedAttributes{
    AttributeRow{u"font", u"color", colourValue},
    AttributeRow{u"font", u"face", faceValue},
    AttributeRow{u"span", u"style", styleValue},
    AttributeRow{u"a", u"href", linkValue},
};

QString safeAttributes(QStringView tag, const std::vector<MarkupTag::Attribute>& attributes) {
  QString safe;
  for (const MarkupTag::Attribute& attribute : attributes)
    for (const AttributeRow& row : allowedAttributes) {
      if (row.tag != tag || row.name.compare(attribute.name, Qt::CaseInsensitive) != 0)
        continue;
      QString value = row.allowedPart(attribute.value);
      value.replace(u'"', QStringLiteral("&quot;"))
          .replace(u'<', QStringLiteral("&lt;"))
          .replace(u'>', QStringLiteral("&gt;"));
      if (!value.isEmpty())
        safe.append(u' ').append(row.name).append(u"=\"").append(value).append(u'"');
    }
  return safe;
}

class MarkupWriter {
 public:
  void text(QStringView text) { html_ += text; }
  void tag(const MarkupTag& tag);
  [[nodiscard]] QString html() && { return std::move(html_); }

 private:
  using Row = const TagRow*;

  void start(Row row, const std::vector<MarkupTag::Attribute>& attributes);
  void end(Row row);
  /// Keeps count of open blocks as the importer does, or with more open than
  /// it has: an end tag closes all that its block holds.
  bool opens(Row row);
  bool closes(Row row);
  [[nodiscard]] qsizetype& openCount(Row row) {
    return openCounts_[static_cast<std::size_t>(row - allowedTags.data())];
  }

  QString html_;
  std::vector<Row> openBlocks_;
  std::array<qsizetype, allowedTags.size()> openCounts_{};
};

void MarkupWriter::tag(const MarkupTag& tag) {
  for (const StandInRow& row : standIns)
    if (row.edge == tag.edge && row.name.compare(tag.name, Qt::CaseInsensitive) == 0)
      html_ += row.html;
  const auto* row = rowNamed(allowedTags, tag.name);
  if (!row)
    return;
  if (tag.edge == Edge::Start)
    start(row, tag.attributes);
  if (tag.edge == Edge::End || tag.closed)
    end(row);
}

void MarkupWriter::start(Row row, const std::vector<MarkupTag::Attribute>& attributes) {
  if (!opens(row))
    return;
  const QString kept = safeAttributes(row->name, attributes);
  if (row->kind != Kind::Link || !kept.isEmpty())
    html_.append(u'<').append(row->name).append(kept).append(u'>');
}

void MarkupWriter::end(Row row) {
  if (closes(row))
    html_.append(u"</").append(row->name).append(u'>');
}

bool MarkupWriter::opens(Row row) {
  if (row->kind != Kind::Block)
    return true;
  openBlocks_.push_back(row);
  ++openCount(row);
  return openBlocks_.size() <= maximumBlockDepth;
}

bool MarkupWriter::closes(Row row) {
  if (row->kind != Kind::Block)
    return row->kind != Kind::Void;
  if (openCount(row) == 0)
    return false;
  Row last = nullptr;
  do {
    last = openBlocks_.back();
    openBlocks_.pop_back();
    --openCount(last);
  } while (last != row);
  return openBlocks_.size() < maximumBlockDepth;
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

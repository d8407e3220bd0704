#include "terminal/core/SafeMarkup.h"

#include "terminal/core/MarkupReader.h"
#include "terminal/core/MarkupTags.h"
#include "terminal/core/MarkupWriter.h"

namespace {

QStringList written(const QString& html, MarkupWriter writer) {
  MarkupReader reader(html);
  while (true) {
    writer.text(reader.text());
    if (reader.atEnd())
      break;
    const auto tag = reader.tag();
    if (!tag)
      writer.text(u"&lt;");
    else if (tag->edge == MarkupTag::Edge::End || tag->closed ||
             !reader.skipHiddenElement(tag->name))
      writer.tag(*tag);
  }
  return std::move(writer).pieces();
}

}  // namespace

QString safeMarkup(const QString& html) {
  return written(html, MarkupWriter()).front();
}

QStringList safeMarkupPieces(const QString& html, qsizetype pieceLength) {
  return written(html, MarkupWriter(pieceLength));
}

bool isInlineTag(QStringView name) {
  using markup::Kind;
  const auto* row = markup::rowNamed(name);
  return row && (row->kind == Kind::Inline || row->kind == Kind::Link || row->name == u"br");
}

#include "terminal/markup/SafeMarkup.h"

#include "terminal/markup/Log.h"
#include "terminal/markup/MarkupPieces.h"
#include "terminal/markup/MarkupReader.h"
#include "terminal/markup/MarkupWriter.h"

namespace kelmora::terminal {

namespace {

void logLosses(const MarkupWriter::Losses& losses, qsizetype hidden) {
  if (losses.forbidden > 0)
    qCInfo(markupLog) << "tags left out:" << losses.forbidden;
  if (losses.tooDeep > 0)
    qCInfo(markupLog) << "tags left out, nested too deep:" << losses.tooDeep;
  if (losses.links > 0)
    qCInfo(markupLog) << "links refused:" << losses.links;
  if (hidden > 0)
    qCInfo(markupLog) << "titles, style sheets and scripts left out:" << hidden;
}

}  // namespace

SafeHtml safeMarkup(const QString& html) {
  return safeMarkupPieces(html, MarkupWriter::endless).front();
}

std::vector<SafeHtml> safeMarkupPieces(const QString& html, qsizetype pieceLength) {
  MarkupReader reader(html);
  MarkupWriter writer(pieceLength);
  qsizetype hidden = 0;
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
    else
      ++hidden;
  }
  logLosses(writer.losses(), hidden);
  std::vector<SafeHtml> pieces;
  for (MarkupPieces::Piece& piece : std::move(writer).pieces())
    pieces.push_back({std::move(piece.html), std::move(piece.facts)});
  return pieces;
}

}  // namespace kelmora::terminal

#include "terminal/core/SafeMarkup.h"

#include "terminal/core/MarkupReader.h"
#include "terminal/core/MarkupWriter.h"

namespace kelmora::terminal {

SafeHtml safeMarkup(const QString& html) {
  return safeMarkupPieces(html, MarkupWriter::endless).front();
}

std::vector<SafeHtml> safeMarkupPieces(const QString& html, qsizetype pieceLength) {
  MarkupReader reader(html);
  MarkupWriter writer(pieceLength);
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
  std::vector<SafeHtml> pieces;
  for (MarkupWriter::Piece& piece : std::move(writer).pieces())
    pieces.push_back({std::move(piece.html), std::move(piece.facts)});
  return pieces;
}

}  // namespace kelmora::terminal

#pragma once

#include <QByteArray>
#include <optional>

class QTextDocument;

namespace kelmora::terminal {

/// A document as the toolkit writes it in HTML, byte for byte, with "?" for what
/// is outside Latin-1, as UTF-8.
[[nodiscard]] QByteArray documentHtml(const QTextDocument& document);

/// The same, several times as fast: the toolkit works out anew for every piece
/// of text how its look is written, here each look is asked for once. Nothing
/// where the document is more than paragraphs and links; that is left to the
/// toolkit.
[[nodiscard]] std::optional<QByteArray> quickHtml(const QTextDocument& document);

/// Whether that is so for a document with a bit of everything, tried once. It is
/// for the toolkits known, which write a piece of text in the same way wherever
/// it stands; for a later one that does not, quickHtml() is not used.
[[nodiscard]] bool isQuickHtmlExact();

}  // namespace kelmora::terminal

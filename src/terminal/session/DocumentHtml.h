#pragma once

#include <QByteArray>
#include <optional>

class QTextDocument;

namespace kelmora::terminal {

/// A document in HTML, byte for byte as the toolkit writes it, encoded in UTF-8;
/// characters outside Latin-1 become "?".
[[nodiscard]] QByteArray documentHtml(const QTextDocument& document);

/// The same, several times as fast: the toolkit translates the format of every
/// piece of text into HTML anew, and this asks it for each format once. Nothing
/// if the document holds anything besides paragraphs of text and links; then only
/// the toolkit can write it.
[[nodiscard]] std::optional<QByteArray> quickHtml(const QTextDocument& document);

/// Whether quickHtml() writes a sample document with a bit of everything as the
/// toolkit does. It relies on the toolkit writing a piece of text in the same way
/// wherever it stands. All known releases do; with one that does not, this is
/// false and quickHtml() is not used. The comparison is made once.
[[nodiscard]] bool isQuickHtmlExact();

}  // namespace kelmora::terminal

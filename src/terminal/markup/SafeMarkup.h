#pragma once

#include <QString>
#include <utility>
#include <vector>

#include "terminal/markup/MarkupFacts.h"

namespace kelmora::terminal {

/// HTML that is safe to insert into the pane.
class SafeHtml {
 public:
  [[nodiscard]] const QString& html() const { return html_; }
  [[nodiscard]] const MarkupFacts& facts() const { return facts_; }

 private:
  friend std::vector<SafeHtml> safeMarkupPieces(const QString& html, qsizetype pieceLength);
  SafeHtml(QString html, MarkupFacts facts) : html_(std::move(html)), facts_(std::move(facts)) {}

  QString html_;
  MarkupFacts facts_;
};

/// Makes HTML safe to insert into the pane. Tags on a short list are written anew;
/// all others are dropped, but their text stays. What the client itself adds (colour
/// spans, line breaks, web links) is unchanged, except that spans nested too deep are
/// replaced by fewer ones with the same look.
///
/// This is needed because of the toolkit's importer: it takes exponential time for
/// nested tables and quadratic time for other nested tags, accepts sizes and spans of
/// any number, and does not count tables towards the paragraph limit.
///
/// What is a tag is decided as in that importer, except for a "<" that is meant as
/// text: see MarkupReader. No text in the result can begin a tag that was not written
/// here. A title, a style sheet or a script is left out with its content if its end
/// tag is in the same text. Entities are unchanged. The time is in proportion to the
/// length of the text, and applying this to its own result changes nothing.
[[nodiscard]] SafeHtml safeMarkup(const QString& html);

/// The same in pieces of about so many characters; at least one. Inserted one after
/// the other they look like the whole, unless tags such as lists form paragraphs:
/// a list that is divided continues as a new list.
[[nodiscard]] std::vector<SafeHtml> safeMarkupPieces(const QString& html, qsizetype pieceLength);

}  // namespace kelmora::terminal

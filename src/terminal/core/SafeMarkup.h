#pragma once

#include <QString>
#include <utility>
#include <vector>

#include "terminal/core/MarkupFacts.h"

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

/// Makes HTML safe to insert into the pane: every tag is written anew from a
/// short list of allowed ones, all others are dropped and their text stays.
/// What the client itself adds (colour spans, line breaks, web links) passes
/// unchanged; where its spans nest too deep, fewer are written that look the
/// same.
///
/// The toolkit's importer takes exponential time for nested tables and the
/// square of the depth for other tags, lets sizes and spans of any number
/// through and keeps tables out of the paragraph limit, so nothing of that kind
/// may reach it. Tags are told apart as that importer does it, but for a "<" that
/// a game means as one: see MarkupReader. No text in the result can start a tag
/// that was not written here. What stands in a title, a style sheet or a script
/// is left out with its tags, if it ends in the same text. Entities are left
/// alone. Takes time in proportion to the text; the same text comes out when
/// applied twice.
[[nodiscard]] SafeHtml safeMarkup(const QString& html);

/// The same in pieces of about so many characters, at least one piece. Inserted
/// one by one they show what the whole would, as long as no tags shape whole
/// paragraphs: lists and the like go on as new ones.
[[nodiscard]] std::vector<SafeHtml> safeMarkupPieces(const QString& html, qsizetype pieceLength);

}  // namespace kelmora::terminal

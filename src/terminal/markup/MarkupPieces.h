#pragma once

#include <QString>
#include <vector>

#include "terminal/markup/MarkupFacts.h"
#include "terminal/markup/MarkupTags.h"

namespace kelmora::terminal {

/// HTML that is being written, in pieces of about the same length, and the facts of
/// each piece. A piece ends within a word, because the importer may drop blanks at the
/// edge of a piece.
class MarkupPieces {
 public:
  struct Piece {
    QString html;
    MarkupFacts facts;
  };

  /// The length is in characters.
  explicit MarkupPieces(qsizetype pieceLength) : pieceLength_(pieceLength) {}

  void addText(QStringView text);
  void addStart(const markup::TagRow& tag, QStringView attributes);
  void addEnd(const markup::TagRow& tag);

  /// The place in the text, between two letters, where the piece is long enough to
  /// end; -1 if there is none.
  [[nodiscard]] qsizetype divisionOf(QStringView text) const;
  /// Whether the piece is far too long, because it has no word that could be divided.
  [[nodiscard]] bool isOverlong() const;
  /// Whether an entity may begin in the last characters.
  [[nodiscard]] bool mayEndInEntity() const;
  /// Ends the piece and begins the next one.
  void endPiece();
  /// What was written in the piece so far reopens tags of the one before, so it does
  /// not count towards the length of the piece.
  void endReopening() { reopened_ = html_.size(); }
  /// At least one.
  [[nodiscard]] std::vector<Piece> take() &&;

 private:
  /// Updates the facts for a tag.
  void note(const markup::TagRow& tag);
  /// Ends a stretch of text without tags, in which entities may be.
  void endStretch();
  /// The length of the piece so far, in characters, without the tags reopened in it.
  [[nodiscard]] qsizetype length() const { return html_.size() - reopened_; }
  /// The least length of each piece but the last, in characters.
  [[nodiscard]] qsizetype leastLength() const;

  qsizetype pieceLength_;
  std::vector<Piece> pieces_;
  QString html_;  ///< of the piece so far, and so are all of these
  MarkupFacts facts_;
  qsizetype line_ = 0;      ///< least number of characters shown since the last line break
  qsizetype stretch_ = 0;   ///< the same since the last tag; negative with many entities
  qsizetype reopened_ = 0;  ///< length of the reopened tags, in characters
};

}  // namespace kelmora::terminal

#pragma once

#include <QString>
#include <array>
#include <limits>
#include <optional>
#include <vector>

#include "terminal/markup/MarkupPieces.h"
#include "terminal/markup/MarkupReader.h"
#include "terminal/markup/MarkupTags.h"

namespace kelmora::terminal {

/// Writes HTML anew, leaving out tags that are not allowed or nested too deep.
class MarkupWriter {
 public:
  /// Divides the HTML into pieces of about that many characters. A piece ends within
  /// a word, because the importer may drop blanks at the edge of a piece. The next
  /// one begins with the start tags that are still open, and its text continues the
  /// same paragraph.
  explicit MarkupWriter(qsizetype pieceLength) : pieces_(pieceLength) {}
  static constexpr qsizetype endless = std::numeric_limits<qsizetype>::max() / 8;

  void text(QStringView text);
  void tag(const MarkupTag& tag);
  /// What was left out so far.
  struct Losses {
    qsizetype forbidden = 0;  ///< tags that are not on the list
    qsizetype tooDeep = 0;    ///< start tags that were nested too deep
    qsizetype links = 0;      ///< links whose target is not allowed
  };
  [[nodiscard]] const Losses& losses() const { return losses_; }
  /// All that was written; at least one piece.
  [[nodiscard]] std::vector<MarkupPieces::Piece> pieces() &&;

 private:
  using Row = const markup::TagRow*;
  struct OpenInline {
    Row row;
    QString attributes;
  };
  struct OpenParagraph {
    Row row;
    QString attributes;
  };
  struct OpenBlock {
    Row row;
    std::size_t inlinesBefore;  ///< how many inline tags were open before it
    QString attributes;
  };
  using Counts = std::array<qsizetype, markup::tagCount>;

  void start(Row row, const std::vector<MarkupTag::Attribute>& attributes);
  void startInline(Row row, const QString& attributes);
  /// Beyond the limit of depth a link is still written unless another one is there,
  /// and so is a span, which replaces the span right around it.
  [[nodiscard]] bool mayNestDeeper(Row row) const;
  void end(Row row);
  void endInline(Row row);
  void write(Row row, const QString& attributes);
  void writeEnd(Row row);
  /// Writes the innermost span anew if its attributes have changed.
  void writeDueSpan();
  // These keep track of the open blocks; an end tag also closes all blocks inside its
  // own. There may be more open here than in the importer, but not fewer. Both return
  // whether the tag is to be written, which it is not below the limit of depth.
  bool openBlock(Row row, const QString& attributes);
  bool closeBlock(Row row);
  /// Closes the blocks that the importer closes before a tag of a definition list: all
  /// up to that list, or all there are.
  void closeUpToTerms();
  /// The index of the first inline tag in the innermost block that was written.
  [[nodiscard]] std::size_t firstInline() const;
  [[nodiscard]] static qsizetype& count(Counts& counts, Row row) {
    return counts[markup::indexOf(row)];
  }

  /// Ends the piece, and begins the next one by reopening the tags that are open.
  void endPiece();

  MarkupPieces pieces_;
  std::vector<OpenBlock> openBlocks_;
  std::vector<OpenInline> openInlines_;
  Counts openCounts_{};
  /// Inline start tags that were left out as too deep; so are their end tags.
  Counts droppedCounts_{};
  /// Whether the innermost span's attributes have changed since it was written. It is
  /// written anew only when something follows that it applies to.
  bool spanIsDue_ = false;
  std::optional<OpenParagraph> openParagraph_;
  Losses losses_;
};

}  // namespace kelmora::terminal

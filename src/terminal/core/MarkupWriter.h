#pragma once

#include <QString>
#include <array>
#include <limits>
#include <optional>
#include <vector>

#include "terminal/core/MarkupFacts.h"
#include "terminal/core/MarkupReader.h"
#include "terminal/core/MarkupTags.h"

namespace kelmora::terminal {

/// Writes anew what was read, tag by tag, with those left out that may not pass
/// or nest too deep.
class MarkupWriter {
 public:
  /// In one piece, or in pieces of about that many characters: each but the last
  /// ends within a word, where no blanks can be lost, and the next begins with
  /// what is open there. Its text goes on in the paragraph of the one before.
  explicit MarkupWriter(qsizetype pieceLength) : pieceLength_(pieceLength) {}
  static constexpr qsizetype endless = std::numeric_limits<qsizetype>::max() / 8;

  struct Piece {
    QString html;
    MarkupFacts facts;
  };

  void text(QStringView text);
  void tag(const MarkupTag& tag);
  /// At least one.
  [[nodiscard]] std::vector<Piece> pieces() &&;

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
    std::size_t inlinesBefore;
    QString attributes;
  };
  using Counts = std::array<qsizetype, markup::tagCount>;

  void start(Row row, const std::vector<MarkupTag::Attribute>& attributes);
  void startInline(Row row, const QString& attributes);
  /// Beyond the limit there is room for one link, and for a span, which takes
  /// the place of a span right around it.
  [[nodiscard]] bool mayNestDeeper(Row row) const;
  void end(Row row);
  void endInline(Row row);
  void writeText(QStringView text);
  void write(Row row, const QString& attributes);
  void writeEnd(Row row);
  void writeDueSpan();
  /// Of a tag that is written now.
  void noteTag(Row row);
  /// Ends a stretch of text that nothing cuts, of which an entity may take some.
  void endStretch();
  /// Keeps count of open blocks as the importer does, or with more open than
  /// it has: an end tag closes all that its block holds.
  bool opens(Row row, const QString& attributes);
  bool closes(Row row);
  /// A term or what it is stands right in its list, or in nothing at all.
  void closeUpToTerms();
  /// Where the inlines of the innermost block that was written begin.
  [[nodiscard]] std::size_t firstInline() const;
  [[nodiscard]] static qsizetype& count(Counts& counts, Row row) {
    return counts[markup::indexOf(row)];
  }

  /// Characters of the piece so far, without what it has reopened.
  [[nodiscard]] qsizetype length() const { return html_.size() - reopened_; }
  /// What a piece has at least, but for the last.
  [[nodiscard]] qsizetype unit() const;
  /// Where a piece is long enough, between two letters, or -1.
  [[nodiscard]] qsizetype divisionOf(QStringView text) const;
  /// With what is open there begun anew in the next.
  void endPiece();
  void finishPiece();

  qsizetype pieceLength_;
  std::vector<Piece> pieces_;
  QString html_;
  MarkupFacts facts_;       ///< of the piece so far
  qsizetype line_ = 0;      ///< characters for certain, as in the facts
  qsizetype stretch_ = 0;   ///< the same, less what entities may take
  qsizetype reopened_ = 0;  ///< characters of the piece that open again what was open
  std::vector<OpenBlock> openBlocks_;
  std::vector<OpenInline> openInlines_;
  Counts openCounts_{};
  /// Inline start tags beyond the limit, whose end tags are left out too.
  Counts droppedCounts_{};
  /// The innermost span has changed its attributes, and no text came since.
  bool spanIsDue_ = false;
  std::optional<OpenParagraph> openParagraph_;
};

}  // namespace kelmora::terminal

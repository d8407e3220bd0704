#pragma once

#include <QStringView>
#include <optional>

namespace kelmora::terminal {

/// Divides server text into paragraphs. The server sends only line breaks, and with
/// those alone a whole session would be a single paragraph: laid out anew for each
/// read, and never dropped. The text may come in pieces of any size; the length of
/// the last paragraph is kept between them.
class ParagraphEnds {
 public:
  /// In characters. A paragraph that has the first length ends at its next line
  /// break, and at the second length even without one.
  struct Lengths {
    qsizetype longParagraph = 4096;
    qsizetype longestParagraph = 65536;
  };
  /// Where a paragraph ends in a text. The end replaces a line break, which is one
  /// character, or none.
  struct End {
    qsizetype start;
    qsizetype replaced;

    [[nodiscard]] qsizetype behind() const { return start + replaced; }
    bool operator==(const End&) const = default;
  };

  /// The length is that of the last paragraph so far.
  explicit ParagraphEnds(Lengths lengths, qsizetype length = 0)
      : lengths_(lengths), length_(length) {}

  /// The first paragraph end behind some place in a text. To find the next one, call
  /// it again with the place behind that end. Returns nothing if there is none; the
  /// rest of the text then belongs to the last paragraph.
  [[nodiscard]] std::optional<End> next(QStringView text, qsizetype from);
  /// Adds a line of which only the least possible length is known. Returns whether
  /// the paragraph ends with it. If the line turns out to be longer, the paragraph
  /// can only have ended earlier.
  [[nodiscard]] bool endsWithLine(qsizetype characters);
  void addCharacters(qsizetype characters) { length_ += characters; }
  /// A new paragraph has begun.
  void beginAnew() { length_ = 0; }
  [[nodiscard]] qsizetype length() const { return length_; }

 private:
  Lengths lengths_;
  qsizetype length_;
};

}  // namespace kelmora::terminal

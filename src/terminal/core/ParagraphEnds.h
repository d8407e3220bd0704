#pragma once

#include <QStringView>
#include <optional>

namespace kelmora::terminal {

/// Where the paragraphs of server text end. The server has line breaks only, so
/// without this a session were one paragraph, laid out whole at each read and
/// never dropped. Told of a stream text by text, in pieces of any size.
class ParagraphEnds {
 public:
  /// Lengths of a paragraph in characters: from where its next line break ends
  /// it, and where it ends at the latest.
  struct Lengths {
    qsizetype longParagraph = 4096;
    qsizetype longestParagraph = 65536;
  };
  /// Where a paragraph ends in a text, and what that takes the place of: a line
  /// end, or nothing.
  struct End {
    qsizetype start;
    qsizetype replaced;

    [[nodiscard]] qsizetype behind() const { return start + replaced; }
    bool operator==(const End&) const = default;
  };

  /// Goes on with a last paragraph of some length.
  explicit ParagraphEnds(Lengths lengths, qsizetype length = 0)
      : lengths_(lengths), length_(length) {}

  /// The first end in a text from some place on, which is where the next search
  /// goes on; nothing where all the rest belongs to the last paragraph.
  [[nodiscard]] std::optional<End> next(QStringView text, qsizetype from);
  /// The same for a line of which is known only how many characters it has at
  /// least: whether its line end ends a paragraph. Text that turns out longer
  /// can only end its paragraphs sooner.
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

#pragma once

#include <QString>
#include <array>
#include <optional>
#include <unordered_set>
#include <vector>

namespace kelmora::terminal {

/// A tag as the server has written it. The views point into the text that was read.
struct MarkupTag {
  enum class Edge { Start, End };
  struct Attribute {
    QStringView name;
    /// As it could be written between double quotes; its entities are not replaced.
    QString value;
  };

  Edge edge = Edge::Start;
  /// In the server's spelling; empty for a comment or a declaration.
  QStringView name;
  /// Only those that have a value.
  std::vector<Attribute> attributes;
  /// Whether it has a slash before its ">", which makes a start tag an end tag too.
  bool closed = false;
};

/// Divides HTML into text and tags exactly as the toolkit's importer does, with all
/// its oddities: names of tags may be quoted, and a slash or a "<" ends a list of
/// attributes. The exception is a "<" before a blank, one whose tag does not end on
/// the same line, and one that begins a comment without an end. These are text here,
/// because games draw and compare with "<", and the importer would drop or change
/// everything behind it. The time is in proportion to the length of the text.
class MarkupReader {
 public:
  explicit MarkupReader(QStringView html) : html_(html) {}

  [[nodiscard]] bool atEnd() const { return pos_ == html_.size(); }
  /// Reads the text up to the next "<" or the end.
  [[nodiscard]] QStringView text();
  /// Reads the tag that begins with the next character, a "<". A tag without an end
  /// lasts until the end of the text. If no tag begins there, reads just the "<" and
  /// returns nothing.
  [[nodiscard]] std::optional<MarkupTag> tag();
  /// After the start tag of a title, a style sheet or a script, skips its content and
  /// its end tag. For any other name, or without an end tag, skips nothing and
  /// returns false.
  [[nodiscard]] bool skipHiddenElement(QStringView name);

 private:
  /// Remembers where a text was found, so that it is not searched for again before
  /// reading has passed that place.
  struct Place {
    QStringView what;
    qsizetype at = -1;
  };

  struct Word {
    QStringView raw;
    QChar quote;  ///< null if it is not quoted
  };

  [[nodiscard]] bool at(QStringView prefix) const { return html_.sliced(pos_).startsWith(prefix); }
  [[nodiscard]] bool atSpace() const { return !atEnd() && html_[pos_].isSpace(); }
  /// Finds the text from here on; the end of the HTML if it is not there.
  [[nodiscard]] qsizetype next(Place& place) const;
  /// The place of the last ">" in the line. A tag that goes on behind it does not end
  /// in this line.
  [[nodiscard]] qsizetype lastTagEnd();
  // These two read what follows a "<", and return nothing if that is text.
  [[nodiscard]] std::optional<MarkupTag> comment();
  [[nodiscard]] std::optional<MarkupTag> tagOfOneLine();
  void skipSpace();
  /// Returns what was skipped.
  QStringView skipPast(QStringView end);
  Word word();
  std::vector<MarkupTag::Attribute> attributes();

  QStringView html_;
  qsizetype pos_ = 0;
  /// A line end as the pipeline writes it.
  Place lineEnd_{u"<br>\n"};
  qsizetype lastTagEnd_ = 0;
  /// Where attributes begin in this line that belong to a tag without an end. If
  /// another "<" leads to the same attributes, its tag has no end either. Without
  /// this, a line of many "<" would be read in quadratic time.
  std::unordered_set<qsizetype> cutAttributes_;
  Place commentEnd_{u"-->"};
  std::array<Place, 3> hiddenEnds_{Place{u"</title"}, Place{u"</style"}, Place{u"</script"}};
};

}  // namespace kelmora::terminal

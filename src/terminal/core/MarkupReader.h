#pragma once

#include <QString>
#include <array>
#include <optional>
#include <unordered_set>
#include <vector>

namespace kelmora::terminal {

/// One tag as it was found. The views are into the text that was read.
struct MarkupTag {
  enum class Edge { Start, End };
  struct Attribute {
    QStringView name;
    /// As it would stand between double quotes: entities are still entities.
    QString value;
  };

  Edge edge = Edge::Start;
  /// As written; empty for a comment or declaration.
  QStringView name;
  /// Those that have a value.
  std::vector<Attribute> attributes;
  /// A slash before its end makes a start tag its own end tag too.
  bool closed = false;
};

/// Takes HTML apart where the toolkit's importer would, oddities included:
/// quoted tag names, an attribute list that a slash or a "<" breaks off. But a
/// "<" before a blank begins no tag, nor one whose tag the end of its line cuts,
/// nor one of a comment without an end: games draw and compare with it, and the
/// importer would drop or change all that follows. Reads each character a fixed
/// number of times.
class MarkupReader {
 public:
  explicit MarkupReader(QStringView html) : html_(html) {}

  [[nodiscard]] bool atEnd() const { return pos_ == html_.size(); }
  /// Reads up to the next "<" or the end.
  [[nodiscard]] QStringView text();
  /// Reads from a "<" on; what ends nowhere ends with the text. Nothing, and
  /// only the "<" is read, when no tag begins there.
  [[nodiscard]] std::optional<MarkupTag> tag();
  /// Behind the start tag of a title, a style sheet or a script: reads to behind
  /// its end tag. Answers false, and reads nothing, where there is none, or for
  /// any other name.
  [[nodiscard]] bool skipHiddenElement(QStringView name);

 private:
  /// The next place of something, looked for once until it is behind.
  struct Place {
    QStringView what;
    qsizetype at = -1;
  };

  struct Word {
    QStringView raw;
    QChar quote;
  };

  [[nodiscard]] bool at(QStringView prefix) const { return html_.sliced(pos_).startsWith(prefix); }
  [[nodiscard]] bool atSpace() const { return !atEnd() && html_[pos_].isSpace(); }
  /// The end of the text where there is none.
  [[nodiscard]] qsizetype next(Place& place) const;
  /// The last ">" before the end of the line, beyond which its tags are cut.
  [[nodiscard]] qsizetype lastTagEnd();
  /// These read from behind the "<" on, and answer nothing where it is text.
  [[nodiscard]] std::optional<MarkupTag> comment();
  [[nodiscard]] std::optional<MarkupTag> tagOfOneLine();
  void skipSpace();
  /// Answers what was skipped.
  QStringView skipPast(QStringView end);
  Word word();
  std::vector<MarkupTag::Attribute> attributes();

  QStringView html_;
  qsizetype pos_ = 0;
  /// As the pipeline writes it.
  Place lineEnd_{u"<br>\n"};
  qsizetype lastTagEnd_ = 0;
  /// Of the line's tags that were cut: none is read again as another tag's.
  std::unordered_set<qsizetype> cutAttributes_;
  Place commentEnd_{u"-->"};
  std::array<Place, 3> hiddenEnds_{Place{u"</title"}, Place{u"</style"}, Place{u"</script"}};
};

}  // namespace kelmora::terminal

#pragma once

#include <QString>
#include <optional>
#include <vector>

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
/// blanks after "<", quoted tag names, an attribute list that a slash or a "<"
/// breaks off. Reads each character a fixed number of times.
class MarkupReader {
 public:
  explicit MarkupReader(QStringView html) : html_(html) {}

  [[nodiscard]] bool atEnd() const { return pos_ == html_.size(); }
  /// Reads up to the next "<" or the end.
  [[nodiscard]] QStringView text();
  /// Reads from a "<" on; what ends nowhere ends with the text. Nothing, and
  /// only the "<" is read, when no tag begins there.
  [[nodiscard]] std::optional<MarkupTag> tag();

 private:
  struct Word {
    QStringView raw;
    QChar quote;
  };

  [[nodiscard]] bool at(QStringView prefix) const { return html_.sliced(pos_).startsWith(prefix); }
  [[nodiscard]] bool atSpace() const { return !atEnd() && html_[pos_].isSpace(); }
  void skipSpace();
  /// Answers what was skipped.
  QStringView skipPast(QStringView end);
  Word word();
  std::vector<MarkupTag::Attribute> attributes();

  QStringView html_;
  qsizetype pos_ = 0;
};

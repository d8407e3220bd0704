#pragma once

#include <QRegularExpression>
#include <QString>
#include <vector>

namespace kelmora::terminal {

/// What a reader looks for, compiled once, and where a paragraph has it.
class TextFinder {
 public:
  struct Options {
    bool matchCase = false;
    bool wholeWords = false;  ///< a match begins and ends where a word does
    bool expression = false;  ///< the words are a regular expression
  };
  /// Counted in UTF-16 code units from the paragraph's start.
  struct Hit {
    qsizetype start;
    qsizetype length;  ///< never 0
  };

  /// Finds nothing.
  TextFinder() = default;
  TextFinder(const QString& words, Options options);

  /// False for no words and for an expression that is none.
  [[nodiscard]] bool isUsable() const { return isUsable_; }
  /// All hits, none of which overlaps another. Line breaks within the paragraph are
  /// line breaks to an expression, and a hard blank is a blank. An expression that
  /// would try for too long is given up for this paragraph, with the hits so far.
  [[nodiscard]] std::vector<Hit> hitsIn(const QString& paragraph) const;

 private:
  QRegularExpression expression_;
  bool isUsable_ = false;
};

}  // namespace kelmora::terminal

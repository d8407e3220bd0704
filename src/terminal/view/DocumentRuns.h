#pragma once

#include <QString>
#include <optional>
#include <vector>

class QTextDocument;

namespace kelmora::terminal {

/// The text of a document that is nothing but paragraphs of characters, with the
/// places at which the look changes. Formats are told by their place among all
/// that the document has.
struct DocumentRuns {
  struct Run {
    int length = 0;
    int format = 0;
  };
  struct Paragraph {
    QString text;
    int blockFormat = 0;
    int charFormat = 0;  ///< what an empty one would begin with
    int runs = 0;        ///< of all runs, those of the paragraphs before it come first
  };

  std::vector<Paragraph> paragraphs = {};
  std::vector<Run> runs = {};

  /// Nothing where the document holds anything else: a table, a list, a ruler, a
  /// picture, a place to jump to, or text from right to left.
  [[nodiscard]] static std::optional<DocumentRuns> of(const QTextDocument& document);
};

}  // namespace kelmora::terminal

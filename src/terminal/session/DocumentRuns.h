#pragma once

#include <QString>
#include <optional>
#include <vector>

class QTextDocument;

namespace kelmora::terminal {

/// The text of a document that consists of paragraphs of text only, divided where
/// the format changes. A format is given as its index in the document's
/// allFormats().
struct DocumentRuns {
  struct Run {
    int length = 0;  ///< in characters
    int format = 0;
  };
  struct Paragraph {
    QString text;
    int blockFormat = 0;
    int charFormat = 0;  ///< of the block itself, not of its text
    int runs = 0;        ///< how many; the list of runs goes on with the next paragraph's
  };

  std::vector<Paragraph> paragraphs = {};
  std::vector<Run> runs = {};

  /// Nothing if the document holds anything else: a table, a list, a ruler, a
  /// picture, a named anchor, or text from right to left.
  [[nodiscard]] static std::optional<DocumentRuns> of(const QTextDocument& document);
};

}  // namespace kelmora::terminal

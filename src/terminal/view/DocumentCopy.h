#pragma once

#include <QHash>
#include <QTextCursor>
#include <QTextDocument>
#include <memory>

class QTextList;

namespace kelmora::terminal {

/// Copies a document a little at a time. The copy has none but the formats in
/// use: the toolkit keeps every format that a document ever had. Meanwhile the
/// document may go on growing at its end, and lose paragraphs at its top by its
/// limit of them; whoever changes it otherwise begins a new copy.
class DocumentCopy {
 public:
  /// The copy has the document's settings from the start, but its limit of
  /// paragraphs only at the end. The document outlives this.
  explicit DocumentCopy(const QTextDocument& document);

  /// Copies for so many milliseconds. Answers whether it is complete, until the
  /// document changes again.
  [[nodiscard]] bool advance(int milliseconds);
  /// A complete copy; it has no parent.
  [[nodiscard]] std::unique_ptr<QTextDocument> take() &&;

 private:
  void copyBlock(const QTextBlock& block);
  void copyList(const QTextBlock& block);

  const QTextDocument& document_;
  std::unique_ptr<QTextDocument> copy_;
  QTextCursor next_;  ///< in the document, where the next paragraph to copy begins
  QTextCursor end_;   ///< of the copy
  /// The copy's, by the document's numbers of theirs: another list may come to
  /// stand in the memory of one that is dropped meanwhile.
  QHash<int, QTextList*> lists_;
  bool isBegun_ = false;
};

}  // namespace kelmora::terminal

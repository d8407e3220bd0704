#pragma once

#include <QHash>
#include <QTextCursor>
#include <QTextDocument>
#include <memory>

class QTextList;

namespace kelmora::terminal {

/// Copies a document a little at a time. The toolkit keeps every format that a
/// document ever had; the copy has only those in use. While it is being copied the
/// document may grow at its end, and its block limit may remove paragraphs at its
/// top. After any other change a new copy has to be begun.
class DocumentCopy {
 public:
  /// The document outlives this. Its settings are copied at once, except for the
  /// block limit, which the copy gets when it is complete.
  explicit DocumentCopy(const QTextDocument& document);

  /// Copies for so many milliseconds. Returns whether the copy is complete; it is
  /// so only until the document changes again.
  [[nodiscard]] bool advance(int milliseconds);
  /// The copy, once advance() has returned true; it has no parent.
  [[nodiscard]] std::unique_ptr<QTextDocument> take() &&;

 private:
  void copyBlock(const QTextBlock& block);
  void copyList(const QTextBlock& block);

  const QTextDocument& document_;
  std::unique_ptr<QTextDocument> copy_;
  QTextCursor next_;  ///< in the document, at the paragraph to copy next
  QTextCursor end_;   ///< at the end of the copy
  /// The copy's lists, by the object indices of the document's. Their addresses
  /// would not do: one may be reused for another list during the copying.
  QHash<int, QTextList*> lists_;
  bool isBegun_ = false;
};

}  // namespace kelmora::terminal

#pragma once

#include <QDeadlineTimer>
#include <QTextCursor>
#include <functional>
#include <optional>

#include "terminal/view/DocumentCopy.h"
#include "terminal/view/PaneQueue.h"
#include "terminal/view/TextLooks.h"

class QTextEdit;

namespace kelmora::terminal {

/// Makes all changes to a pane's document: appends waiting text, divides long
/// paragraphs, and keeps the document from growing without limit. It gives the
/// document a PaneLayout, which measures nothing until a change is complete.
class PaneDocument {
 public:
  struct Limits {
    int paragraphs = 750;
    ParagraphEnds::Lengths lengths = {};
    /// Paragraphs are also dropped when the document is taller than this, in pixels:
    /// the positions of scroll bars are 32-bit integers.
    int tallest = 100'000'000;
    /// The document is replaced by a copy of it without unused formats when it has
    /// more formats than twice as many as after the last time, plus this number. A
    /// format takes about half a kilobyte, the toolkit keeps every one that a
    /// document ever had, and each new link target makes one.
    qsizetype formats = 4096;
  };

  /// The pane outlives this.
  PaneDocument(QTextEdit& pane, const Limits& limits);

  /// Appends texts from the queue, which must not be empty, until the deadline or
  /// until the queue is empty, but at least one. Moves the pane's cursor to the end.
  void write(PaneQueue& queue, QDeadlineTimer deadline);
  /// Drops paragraphs from the top, but never the last one, while the document is
  /// too tall.
  void limitHeight();
  /// Begins to copy the document if many of its formats are unused. It looks at
  /// the whole document, so call it in a quiet moment.
  void renewIfFormatsAreUnused();
  /// Whether the document is being copied, to get rid of unused formats.
  [[nodiscard]] bool isRenewing() const { return copy_.has_value(); }
  /// Continues copying for so many milliseconds. Returns whether the copy, with the
  /// same text and selection, has taken the document's place. Just before that it is
  /// handed to the function, for whatever else shows the document.
  bool renew(int milliseconds, const std::function<void(QTextDocument&)>& show);

 private:
  [[nodiscard]] QTextDocument& document() const;
  void putCursorToTheEnd();
  void writeOne(const StyledText& text);
  void writeOne(const SafeHtml& text);
  void writeOne(const StatusLine& text);
  void writeOne(const PlainText& text);
  void divideLastParagraph();
  void clearUnlessFormatGoesOn();
  void limitFormats();

  QTextEdit& pane_;
  Limits limits_;
  TextLooks looks_;
  QTextCursor end_;  ///< where write() appends; null at other times
  std::optional<DocumentCopy> copy_;
  qsizetype formatsAtRenewal_ = 0;
};

}  // namespace kelmora::terminal

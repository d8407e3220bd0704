#pragma once

#include <QDeadlineTimer>
#include <QTextCursor>
#include <optional>

#include "terminal/view/DocumentCopy.h"
#include "terminal/view/PaneQueue.h"
#include "terminal/view/TextLooks.h"

class QTextEdit;

namespace kelmora::terminal {

/// A pane's document, and the only one that changes it: writes what waits at
/// its end, ends long paragraphs, and keeps it from growing without end. It has
/// a PaneLayout, which is told of each change as a whole.
class PaneDocument {
 public:
  struct Limits {
    int paragraphs = 750;
    ParagraphEnds::Lengths lengths = {};
    /// Pixels, beyond which paragraphs are dropped as well: scroll bars count in
    /// whole numbers of 32 bits.
    int tallest = 100'000'000;
    /// Formats, each about half a kilobyte, that the document may gather beyond
    /// twice those it had when it was last made anew. The toolkit keeps every
    /// format that a document ever had, and each link of another target is one.
    qsizetype formats = 4096;
  };

  /// The pane outlives this.
  PaneDocument(QTextEdit& pane, const Limits& limits);

  /// Writes for that long, or until the queue is empty; at least one text, so
  /// there must be one. The pane's cursor is at the end then.
  void write(PaneQueue& queue, QDeadlineTimer deadline);
  /// Drops paragraphs from the top, all but the last, of what is too tall.
  void limitHeight();
  /// For a quiet moment: looks whether many formats are out of use.
  void lookAtFormats();
  /// Whether the document has gathered formats, and is made anew meanwhile.
  [[nodiscard]] bool isRenewing() const { return copy_.has_value(); }
  /// Goes on with that for so many milliseconds. Answers whether another
  /// document has taken the place of the old one, with the same text and
  /// selection.
  bool renew(int milliseconds);

 private:
  [[nodiscard]] QTextDocument& document() const;
  void putCursorToTheEnd();
  void writeOne(const StyledText& text);
  void writeOne(const SafeHtml& text);
  void writeOne(const StatusLine& text);
  void writeOne(const PlainText& text);
  void divideLastParagraph();
  void clearUnlessItShapesWhatFollows();
  void limitFormats();

  QTextEdit& pane_;
  Limits limits_;
  TextLooks looks_;
  QTextCursor end_;  ///< while it is written
  std::optional<DocumentCopy> copy_;
  qsizetype formatsAtRenewal_ = 0;
};

}  // namespace kelmora::terminal

#pragma once

#include <QColor>
#include <QString>
#include <deque>
#include <variant>

#include "terminal/core/ParagraphEnds.h"
#include "terminal/core/ServerText.h"

namespace kelmora::terminal {

/// HTML for a paragraph of its own.
struct StatusLine {
  SafeHtml html;
};
/// Text without markup; each line feed in it ends a paragraph.
struct PlainText {
  QString text;
  QColor colour;
  QColor background;
};
/// Server text and HTML are for the end of the last paragraph.
using PaneText = std::variant<StyledText, SafeHtml, StatusLine, PlainText>;

/// What waits to be shown, in its order. The front of a queue so long that the
/// pane would have dropped it again, by the number of paragraphs behind it, is
/// taken off unseen.
class PaneQueue {
 public:
  /// Characters of server text that are shown at once: keys come between the
  /// turns of two.
  static constexpr qsizetype sliceLength = qsizetype{8} * 1024;

  /// How many paragraphs the pane keeps, and where they end.
  PaneQueue(qint64 paragraphs, ParagraphEnds::Lengths lengths)
      : paragraphs_(paragraphs), lengths_(lengths), ends_(lengths) {}

  void add(PaneText text);
  void add(ServerText text);
  /// The next one to be shown, or a slice of it; there must be one.
  [[nodiscard]] PaneText take();
  [[nodiscard]] bool isEmpty() const { return waiting_.empty() && bridge_.empty(); }
  /// About the memory that the waiting texts take, in bytes.
  [[nodiscard]] qsizetype size() const { return size_; }
  /// Whether texts were taken off unseen since the last call, and all that the
  /// pane shows could go too: the text to be shown next decides by itself what
  /// those behind it look like.
  [[nodiscard]] bool takeSkip();

 private:
  struct Waiting {
    PaneText text;
    qsizetype memory = 0;
    /// What it does to the pane ends with it, but for its look, and that is
    /// known.
    bool isPassing = true;
    /// Whether plain text behind it takes its look from it, and not from what it
    /// follows.
    bool hasLook = false;
    /// Paragraphs before and up to its end, and the length of the one in which it
    /// begins: exact for all but HTML, which has as much at least.
    qint64 endedBefore = 0;
    qint64 endedBehind = 0;
    qsizetype lengthBefore = 0;
  };

  void count(Waiting& waiting);
  void countMarkup(Waiting& waiting, const SafeHtml& html);
  void dropUnseen();
  /// Takes off what is before such an end of a paragraph, which has to be in the
  /// first text. Answers false where that has no exact ends.
  [[nodiscard]] bool cutFirst(qint64 number);
  /// Of the first text, up to there.
  void leaveOut(qsizetype end);
  void dropFirst();
  [[nodiscard]] PaneText takeBridge();
  [[nodiscard]] PaneText takeFirst();
  [[nodiscard]] StyledText nextSlice();

  qint64 paragraphs_;
  ParagraphEnds::Lengths lengths_;
  std::deque<Waiting> waiting_;
  /// How much of the first text is gone, and of its runs.
  qsizetype gone_ = 0;
  std::size_t goneRuns_ = 0;
  ParagraphEnds ends_;  ///< at the end of all that came
  qint64 ended_ = 0;
  qint64 unseen_ = 0;  ///< of those, as far as texts were taken off unseen
  qsizetype size_ = 0;
  /// What is shown in place of what was taken off unseen: the last text that has
  /// a look, as plain text behind it goes on with parts of that, and the last
  /// plain text behind that, which ends its paragraph.
  std::deque<PaneText> bridge_;
  bool skipped_ = false;
};

}  // namespace kelmora::terminal

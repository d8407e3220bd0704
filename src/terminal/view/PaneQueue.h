#pragma once

#include <QColor>
#include <QString>
#include <deque>
#include <variant>

#include "terminal/core/ParagraphEnds.h"
#include "terminal/core/ServerText.h"

namespace kelmora::terminal {

/// HTML for a new paragraph.
struct StatusLine {
  SafeHtml html;
};
/// Text without markup; each line feed in it ends a paragraph.
struct PlainText {
  QString text;
  QColor colour;
  QColor background;
};
/// Anything that is added to the pane. StyledText and SafeHtml are text from the
/// server; it continues the last paragraph.
using PaneText = std::variant<StyledText, SafeHtml, StatusLine, PlainText>;

/// The texts that wait to be shown, in their order. The pane keeps only so many
/// paragraphs. When at least as many are waiting behind a text, the pane would drop
/// it again at once, so the queue drops it without it ever being shown.
class PaneQueue {
 public:
  /// The most characters of server text that take() returns at once, so that keys
  /// can be handled in between.
  static constexpr qsizetype sliceLength = qsizetype{8} * 1024;

  /// How many paragraphs the pane keeps, and how long they may be.
  PaneQueue(qint64 paragraphs, ParagraphEnds::Lengths lengths)
      : paragraphs_(paragraphs), lengths_(lengths), ends_(lengths) {}

  void add(PaneText text);
  void add(ServerText text);
  /// The text to show next, or a slice of it. The queue must not be empty.
  [[nodiscard]] PaneText take();
  [[nodiscard]] bool isEmpty() const { return waiting_.empty() && standIns_.empty(); }
  /// The memory that the waiting texts take, in bytes; an approximation.
  [[nodiscard]] qsizetype size() const { return size_; }
  /// Whether the pane may be cleared before the next text is shown. It may if texts
  /// were dropped since the last call, because the waiting ones fill the pane, and
  /// if the look of the next text does not depend on what the pane shows.
  [[nodiscard]] bool takeClearing();

 private:
  struct Waiting {
    PaneText text;
    qsizetype memory = 0;  ///< in bytes
    /// Whether it may be dropped: it affects later text at most by its look, and
    /// not, for example, by a paragraph format that goes on.
    bool canBeDropped = true;
    /// Whether it contains characters, whose look plain text behind it continues.
    bool hasLook = false;
    /// How many paragraphs end before it and before its end, of all that came, and
    /// how many characters the paragraph has in which it begins. HTML may have more
    /// than is counted here; everything else is exact.
    qint64 endedBefore = 0;
    qint64 endedBehind = 0;
    qsizetype lengthBefore = 0;
  };

  void count(Waiting& waiting);
  void countMarkup(Waiting& waiting, const SafeHtml& html);
  void dropUnseen();
  void dropOutdated();
  /// Drops the part of the first text before the paragraph end of that number, of
  /// all that came. Returns false if the first text is not server text without
  /// HTML, in which alone paragraph ends are known exactly.
  [[nodiscard]] bool cutFirst(qint64 number);
  /// Removes the first text's characters up to there.
  void removeUpTo(qsizetype end);
  void removeFirst();
  [[nodiscard]] PaneText takeStandIn();
  [[nodiscard]] PaneText takeFirst();
  [[nodiscard]] StyledText nextSlice();

  qint64 paragraphs_;
  ParagraphEnds::Lengths lengths_;
  std::deque<Waiting> waiting_;
  /// How many characters and runs of the first text have been removed.
  qsizetype gone_ = 0;
  std::size_t goneRuns_ = 0;
  ParagraphEnds ends_;   ///< at the end of all that came
  qint64 ended_ = 0;     ///< paragraphs that have ended, of all that came
  qint64 outdated_ = 0;  ///< of those, how many the waiting text pushes out of the pane
  qsizetype size_ = 0;
  /// Shown in place of the dropped texts. Plain text continues parts of the look of
  /// the text before it, so this holds the last dropped text that has a look, and
  /// the last plain text behind that, which ends the paragraph.
  std::deque<PaneText> standIns_;
  bool hasDropped_ = false;  ///< since the last takeClearing()
};

}  // namespace kelmora::terminal

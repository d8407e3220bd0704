#pragma once

#include <QColor>
#include <QString>
#include <deque>
#include <optional>
#include <variant>

#include "terminal/core/ParagraphCount.h"
#include "terminal/core/ServerText.h"

/// HTML that safeMarkup() has seen, for the end of the last paragraph.
struct SafeHtml {
  QString html;
};
/// The same, for a paragraph of its own.
struct StatusLine {
  QString html;
};
/// Text without markup; each line feed in it ends a paragraph.
struct PlainText {
  QString text;
  QColor colour;
  QColor background;
};
using PaneText = std::variant<ServerText, SafeHtml, StatusLine, PlainText>;

/// What waits to be shown, in its order. The front of a queue so long that the
/// pane would have dropped it again, by the number of paragraphs behind it, is
/// taken off unseen.
class PaneQueue {
 public:
  struct Limits {
    qint64 paragraphs;        ///< that the pane keeps
    qsizetype longParagraph;  ///< characters after which a line ends one
  };

  explicit PaneQueue(Limits limits) : limits_(limits), counted_(limits.longParagraph) {}

  /// A long read becomes several texts.
  void add(PaneText text);
  /// The next one to be shown; there must be one.
  [[nodiscard]] PaneText take();
  [[nodiscard]] bool isEmpty() const { return waiting_.empty() && !bridge_; }
  /// About the memory that the waiting texts take, in bytes.
  [[nodiscard]] qsizetype size() const { return size_; }
  /// Whether texts were taken off unseen since the last call, and all that the
  /// pane shows could go too: the text to be shown next decides by itself what
  /// those behind it look like.
  [[nodiscard]] bool takeSkip();

 private:
  /// Where plain text behind a text takes its look from: the text itself, or
  /// what it follows.
  enum class Look { FromBefore, Own };
  struct Waiting {
    PaneText text;
    /// What it does to the pane ends with it, but for its look, and that is
    /// known. Set, like all that follows, once it is counted.
    bool isPassing = false;
    Look look = Look::FromBefore;
    /// Up to its end, by the count.
    qint64 endedParagraphs = 0;
  };

  void append(PaneText text);
  void dropUnseen();
  void count(Waiting& waiting);

  Limits limits_;
  std::deque<Waiting> waiting_;
  std::size_t countedTexts_ = 0;
  ParagraphCount counted_;
  qsizetype uncountedSize_ = 0;
  qsizetype size_ = 0;
  /// The last text with a look that was taken off unseen: plain text behind it
  /// goes on with parts of that look.
  std::optional<PaneText> bridge_;
  bool skipped_ = false;
};

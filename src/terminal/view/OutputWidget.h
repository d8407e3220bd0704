#pragma once

#include <QTextBrowser>
#include <QTimer>

#include "terminal/core/ServerText.h"
#include "terminal/view/PaneQueue.h"
#include "terminal/view/PaneTurns.h"
#include "terminal/view/TextLooks.h"

class InputWidget;

/// The scrolling pane, and the one door to it: server text, status lines, the
/// echo of sent lines and the client's own messages all enter here, each at
/// the end of the document and in the order of the calls.
///
/// They wait in a queue until the next turn of the event loop, for the rest of
/// a frame where text came just before, or longer in a flood (PaneTurns). A
/// turn inserts as much as leaves time for keys and paint. Who reads the document through this
/// class reads all of it: the queue is emptied first.
class OutputWidget : public QTextBrowser {
  Q_OBJECT

 public:
  /// Older paragraphs are dropped from the top beyond this many.
  static constexpr int maximumParagraphs = 750;
  /// Characters after which a paragraph is continued in a new one at its next
  /// line break. Server text has line breaks only, so without this a session
  /// were one paragraph, laid out whole at each read and never dropped.
  static constexpr qsizetype longParagraph = ParagraphEnds::Lengths().longParagraph;
  /// Characters after which it is continued even where no line breaks.
  static constexpr qsizetype longestParagraph = ParagraphEnds::Lengths().longestParagraph;
  /// Pixels beyond which older paragraphs are dropped as well, and how much may
  /// come on top of them in one change. The toolkit lays out no more than some
  /// eight millions: there its pages end, and it goes round in them for good.
  static constexpr int tallestDocument = 3'000'000;
  static constexpr int tallestChange = 2'000'000;
  /// Character formats out of use, each about half a kilobyte, that a document
  /// may have gathered before it is made anew in the next quiet moment, and at
  /// once. The toolkit keeps every format that a document ever had, and each
  /// link of another target is one.
  static constexpr qsizetype manyFormats = 4096;
  static constexpr qsizetype tooManyFormats = 3 * manyFormats;

  /// The input bar outlives the pane; typing is a Tab away from reading.
  OutputWidget(InputWidget& inputBar, QWidget* parent);

  /// Continues the last paragraph with what the pipeline made of one read.
  void showServerText(ServerText text);
  /// A paragraph of its own.
  void appendStatusLine(SafeHtml html);
  /// Yellow on black; the text is shown with its own line end.
  void echoSentText(const QString& text);
  /// One line in a colour on black; an invalid colour is drawn white.
  void printText(const QString& text, const QColor& colour);
  /// "## " and the text, yellow on red.
  void printError(const QString& text);
  /// "++ " and the text, white on blue.
  void printInfo(const QString& text);

  /// About the memory of what is not in the document yet.
  [[nodiscard]] qsizetype waitingBytes() const { return queue_.size(); }
  /// Whether all that came is in the document, without emptying the queue.
  [[nodiscard]] bool settled() const { return queue_.isEmpty(); }
  // With everything in it that came before.
  [[nodiscard]] QTextDocument* document();
  [[nodiscard]] QString toPlainText();
  [[nodiscard]] QTextCursor textCursor();
  /// What waits goes too.
  void clear();

  /// Nothing that the server names is ever loaded: no file, no picture, no
  /// style sheet.
  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  /// The newest line stays in sight where it was; otherwise the line at the top
  /// stays there.
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  /// A link never replaces what the pane shows.
  void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;

 private:
  enum class Amount { WhatFitsATurn, All };

  /// The newest line stays in sight, however the height changes, until somebody
  /// scrolls up.
  void followTheEnd();
  void showTheEnd();
  /// Below the last line, in pixels.
  [[nodiscard]] int margin() const;
  template <typename Text>  // PaneText or ServerText
  void add(Text text);
  void takeTurn();
  void insertWaiting(Amount amount);
  /// Drops paragraphs from the top, all but the last, of what is taller.
  void limitHeight(double tallest);
  void clearUnlessItShapesWhatFollows();
  /// At most so many formats are out of use, by those in use at the last look.
  [[nodiscard]] qsizetype formatsSinceLook() const;
  /// How many are, looking again where it may be more than that.
  [[nodiscard]] qsizetype unusedFormats(qsizetype worthALook);
  void limitFormats();
  /// The same document with none but the formats in use.
  void renew();

  InputWidget& inputBar_;
  PaneQueue queue_;
  PaneTurns turns_;
  TextLooks looks_;
  QTimer nextTurn_;
  QTimer quietMoment_;
  qsizetype formatsInUse_ = 0;  ///< at the last look
  /// Whether the newest line is in sight.
  bool followsTheEnd_ = true;
};

#pragma once

#include <QDeadlineTimer>
#include <QTextBrowser>
#include <QTimer>

#include "terminal/view/PaneDocument.h"
#include "terminal/view/PaneQueue.h"
#include "terminal/view/PaneSight.h"
#include "terminal/view/PaneTurns.h"

class InputWidget;

/// The scrolling pane, and the one door to it: server text, status lines, the
/// echo of sent lines and the client's own messages all enter here, each at
/// the end of the document and in the order of the calls.
///
/// They wait in a queue until the next turn of the event loop, for the rest of
/// a frame where text came just before, or longer in a flood (PaneTurns). A
/// turn writes as much as leaves time for keys and paint. Who reads the document
/// calls settle() first.
class OutputWidget : public QTextBrowser {
  Q_OBJECT

 public:
  static constexpr kelmora::terminal::PaneDocument::Limits limits = {};

  /// The input bar outlives the pane; typing is a Tab away from reading.
  OutputWidget(InputWidget& inputBar, QWidget* parent);

  /// Continues the last paragraph with what the pipeline made of one read.
  void showServerText(kelmora::terminal::ServerText text);
  /// A paragraph of its own.
  void appendStatusLine(kelmora::terminal::SafeHtml html);
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
  /// Whether all that came is in the document.
  [[nodiscard]] bool settled() const { return queue_.isEmpty(); }
  /// Writes all that waits, at once.
  void settle();

  /// Nothing that the server names is ever loaded: no file, no picture, no
  /// style sheet.
  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  /// A link never replaces what the pane shows.
  void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;

 private:
  template <typename Text>  // PaneText or ServerText
  void add(Text text);
  void takeTurn();
  /// Writes for so many milliseconds, or until the queue is empty.
  void write(QDeadlineTimer deadline);
  /// Makes the document anew, for a moment at a time.
  void renew();
  void renewLater();

  InputWidget& inputBar_;
  kelmora::terminal::PaneQueue queue_;
  kelmora::terminal::PaneTurns turns_;
  QTimer nextTurn_;
  QTimer idleMoment_;
  QTimer quietMoment_;
  QTimer nextCopy_;
  kelmora::terminal::PaneDocument document_;
  kelmora::terminal::PaneSight sight_;
};

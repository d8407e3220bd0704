#pragma once

#include <QDeadlineTimer>
#include <QTextBrowser>
#include <QTimer>

#include "terminal/reading/PaneSight.h"
#include "terminal/reading/ReadingTools.h"
#include "terminal/speech/Announcer.h"
#include "terminal/speech/PaneSpeech.h"
#include "terminal/view/PaneDocument.h"
#include "terminal/view/PaneQueue.h"
#include "terminal/view/PaneTurns.h"

class InputWidget;

/// The scrolling output pane. Server text, status lines, the echo of sent lines and
/// the client's own messages all go through it, and are added at the end of its
/// document in the order of the calls.
///
/// Text is not added at once. It waits in a queue until the next turn of the event
/// loop; if text came just before, for the rest of that frame; in a flood, longer
/// (PaneTurns). A turn ends early enough to leave time for keys and painting. Call
/// settle() before reading the document, so that nothing is missing from it.
class OutputWidget : public QTextBrowser {
  Q_OBJECT

 public:
  static constexpr kelmora::terminal::PaneDocument::Limits limits = {};

  /// The input bar outlives the pane. The Tab key leads from the pane to it.
  OutputWidget(InputWidget& inputBar, QWidget* parent);

  /// Adds what the pipeline made of one read to the end of the last paragraph.
  void showServerText(kelmora::terminal::ServerText text);
  /// Adds a new paragraph.
  void appendStatusLine(kelmora::terminal::SafeHtml html);
  /// Yellow on black; no line end is added to the text.
  void echoSentText(const QString& text);
  /// A line in that colour, or in white if it is invalid, on black.
  void printText(const QString& text, const QColor& colour);
  /// "## " and the text, yellow on red.
  void printError(const QString& text);
  /// "++ " and the text, white on blue.
  void printInfo(const QString& text);

  /// Whether all text is in the document. The benchmarks measure the time until then.
  [[nodiscard]] bool settled() const { return queue_.isEmpty(); }
  /// Writes everything that is waiting into the document now.
  void settle();

  /// Opens the bar to find words, with the words that are selected.
  void find() { tools_.find(); }
  /// What makes a trigger of a line of the game for the player.
  void setTriggerMaker(kelmora::terminal::TriggerMaker maker);

  /// Loads nothing: the server must not make the client read files, pictures or
  /// style sheets.
  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  /// Does nothing: following a link must not replace what the pane shows.
  void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;

 private:
  /// Text that is not the player's own is read out where a screen reader runs.
  enum class Whose { Player, Other };
  template <typename Text>  // PaneText or ServerText
  void add(Text text, Whose whose = Whose::Other);
  void takeTurn();
  /// Writes waiting text until the deadline, or until the queue is empty.
  void write(QDeadlineTimer deadline);
  /// Continues copying the document into one without unused formats, if that is
  /// under way.
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
  kelmora::terminal::ReadingTools tools_;
  kelmora::terminal::Announcer announcer_;
  kelmora::terminal::PaneSpeech speech_;
};

#pragma once

#include <QObject>
#include <QTextCursor>
#include <functional>
#include <memory>
#include <utility>

#include "terminal/reading/ReadBack.h"

class QContextMenuEvent;
class QMenu;
class QPoint;

namespace kelmora::terminal {

class FindBar;

/// What a trigger is made with.
struct TriggerMaker {
  /// The pattern for a line as it is shown and a place in it; empty if it has none.
  std::function<QString(const QString& line, qsizetype place)> patternFor;
  /// Lets the reader make a trigger with a pattern.
  std::function<void(const QString& pattern)> make;
};

/// What a reader of a pane has beside its text: the view of earlier text, the bar to
/// find words, and the context menu. None of them exists before it is used.
class ReadingTools : public QObject {
  Q_OBJECT

 public:
  /// All three outlive this. The input bar gets the keyboard when a tool closes.
  ReadingTools(QTextBrowser& pane, PaneSight& sight, QWidget& inputBar);
  ~ReadingTools() override;

  /// To be called before new text moves the pane to its end.
  void beforeText() { readBack_.beforeText(); }
  /// To be called with a document that is about to take the place of the pane's.
  void beforeDocument(QTextDocument& document);
  /// To be called when the pane's size or font has changed.
  void layOut();

  /// Opens the bar to find words, with the words that are selected.
  void find();
  /// Without it the menu does not offer to make a trigger.
  void setTriggerMaker(TriggerMaker maker) { triggerMaker_ = std::move(maker); }
  /// Shows the context menu where the mouse asks for it, in the pane or in the view of
  /// earlier text. For a key it comes by itself: at the hit of the bar to find words, if
  /// that is open, or at what is selected, or at the last hit of a closed bar, or else
  /// at the last line in sight.
  void showMenu(QTextBrowser& view, const QContextMenuEvent& event);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void closeFindBar();
  /// The Tab key goes from the top to the bottom.
  void orderTabs();
  [[nodiscard]] std::unique_ptr<QMenu> menuFor(QTextBrowser& view, const QPoint& place);
  /// In pixels of the view's viewport.
  [[nodiscard]] QPoint placeForKeys(const QTextBrowser& view) const;

  QTextBrowser& pane_;
  QWidget& inputBar_;
  ReadBack readBack_;
  std::unique_ptr<FindBar> findBar_;
  QTextCursor lastHit_;  ///< of a bar that has been closed
  TriggerMaker triggerMaker_;
};

}  // namespace kelmora::terminal

#pragma once

#include <QObject>
#include <QPointer>
#include <QTextCursor>
#include <QTimer>
#include <deque>

#include "terminal/core/TextFinder.h"

class QTextBrowser;

namespace kelmora::terminal {

class BarMarks;
class PaneSight;
class ReadBack;

/// Finds words in a pane while text keeps coming: marks every hit on the scroll bar
/// and those in sight in the text, and goes from one to the next. It looks through
/// the document for a few milliseconds at a time, and again only through what has
/// changed.
class PaneFind : public QObject {
  Q_OBJECT

 public:
  /// More are not looked for.
  static constexpr std::size_t mostHits = 10'000;

  /// All three outlive this.
  PaneFind(QTextBrowser& pane, PaneSight& sight, ReadBack& readBack);
  ~PaneFind() override;

  /// Looks for other words. If no hit of theirs is in sight, the nearest one above
  /// comes into sight, or else the nearest one below.
  void look(TextFinder finder);
  /// So many pixels at the upper edge are out of sight, behind what stands there.
  void setCovered(int pixels) { covered_ = pixels; }
  // To the next hit, from the last one to the first and the other way round.
  void goToOlder();
  void goToNewer();

  [[nodiscard]] std::size_t count() const { return hits_.size(); }
  /// From 1, the oldest; 0 while there is none.
  [[nodiscard]] std::size_t current() const;
  /// Selects the current hit; selects nothing without one.
  [[nodiscard]] const QTextCursor& currentHit() const { return current_; }
  /// The line of the game in which the current hit is.
  [[nodiscard]] QString currentLine() const;
  /// Whether the whole document has been looked through.
  [[nodiscard]] bool isDone() const { return !turn_.isActive(); }

 Q_SIGNALS:
  /// The counts are other ones.
  void counted();

 private:
  /// In the document's characters.
  struct Place {
    int start;
    int length;
  };
  using Places = std::deque<Place>;

  /// Shows the hits anew whenever this view scrolls.
  void watchBar(const QTextBrowser& view);
  void watchDocument();
  void takeChange(int from, int removed, int added);
  void takeTurn();
  void chooseNearest();
  void makeCurrent(const Place& place);
  /// The view in which the reader reads.
  [[nodiscard]] QTextBrowser& reader() const;
  /// The document's characters that are in sight, but for so many pixels at the upper
  /// and the lower edge.
  [[nodiscard]] static Place inSight(const QTextBrowser& view, int above = 0, int below = 0);
  [[nodiscard]] Places::const_iterator firstFrom(int position) const;
  void showLater();
  void show();
  void showHitsIn(QTextBrowser& view) const;
  void showMarks();

  QTextBrowser& pane_;
  PaneSight& sight_;
  ReadBack& readBack_;
  QPointer<QTextDocument> document_;
  TextFinder finder_;
  Places hits_;
  int covered_ = 0;
  int looked_ = 0;  ///< up to here the hits are known
  bool choosesNearest_ = false;
  QTextCursor current_;  ///< selects the current hit
  QTimer turn_;
  QTimer shows_;
  QPointer<BarMarks> marks_;  ///< child of the reader's bar
};

}  // namespace kelmora::terminal

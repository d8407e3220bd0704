#pragma once

#include <QObject>
#include <QPointer>
#include <QTextCursor>
#include <QTimer>
#include <optional>

#include "terminal/core/TextFinder.h"
#include "terminal/reading/PaneHits.h"

class QTextBrowser;

namespace kelmora::terminal {

class BarMarks;
class ReadBack;

/// Finds words in a pane while text keeps coming: marks every hit on the scroll bar
/// and those in sight in the text, and goes from one to the next. It looks through
/// the document for a few milliseconds at a time, from its end to its beginning, and
/// again only through what has changed.
class PaneFind : public QObject {
  Q_OBJECT

 public:
  /// Both outlive this.
  PaneFind(QTextBrowser& pane, ReadBack& readBack);
  ~PaneFind() override;

  /// Looks for other words. If no hit of theirs is in sight, the nearest one above
  /// comes into sight, or else the nearest one below. That is seen from where the reader
  /// was before the first words, so that while they are typed and mended the place does
  /// not wander.
  void look(TextFinder finder);
  /// So many pixels at the upper edge are out of sight, behind what stands there.
  void setCovered(int pixels) { covered_ = pixels; }
  /// To be called with every document that takes the place of the pane's, while both
  /// views still have the old one.
  void takeDocument(QTextDocument& document);
  // To the next hit, from the last one to the first and the other way round.
  void goToOlder();
  void goToNewer();

  /// At most PaneHits::most.
  [[nodiscard]] std::size_t count() const { return hits_.places().size(); }
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
  using Place = PaneHits::Place;

  /// Shows the hits anew whenever this view scrolls.
  void watchBar(const QTextBrowser& view);
  void watchDocument(QTextDocument& document);
  void takeChange(int from, int removed, int added);
  void takeTurn();
  void chooseNearest();
  void makeCurrent(const Place& place);
  /// The view in which the reader reads.
  [[nodiscard]] QTextBrowser& reader() const;
  /// The document's characters that are in sight, but for so many pixels at the upper
  /// and the lower edge.
  [[nodiscard]] static Place inSight(const QTextBrowser& view, int above = 0, int below = 0);
  /// Where a hit can be read without scrolling.
  [[nodiscard]] Place readable() const;
  void showLater();
  void show();
  /// Takes the marks in the text away.
  void unmark();
  void showHitsIn(QTextBrowser& view) const;
  void showMarks();

  QTextBrowser& pane_;
  ReadBack& readBack_;
  QPointer<QTextDocument> document_;
  PaneHits hits_;
  int covered_ = 0;
  /// The place behind the last one that was in sight before words were looked for. None
  /// if the reader has moved since.
  std::optional<int> origin_;
  bool choosesNearest_ = false;
  QTextCursor current_;  ///< selects the current hit
  QTimer turn_;
  QTimer shows_;
  QPointer<BarMarks> marks_;  ///< child of the reader's bar
};

}  // namespace kelmora::terminal

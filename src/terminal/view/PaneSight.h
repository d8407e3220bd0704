#pragma once

#include <QObject>
#include <QTextCursor>

class QTextEdit;

namespace kelmora::terminal {

class PaneLayout;

/// Where a pane looks: at the newest line, however its text, its size and its
/// font change, until somebody scrolls up; then the line at the top stays where
/// it is. Lays out what comes in sight, and nothing else.
class PaneSight {
 public:
  /// What a change leaves as it was drawn.
  enum class Keeps {
    /// All that was there; text is appended, paragraphs at the top may go.
    Text,
    Nothing
  };

  /// A change of the text or its layout, for as long as this lives; at its end
  /// the bars are where they belong. A change within a change is part of it.
  class Change {
   public:
    explicit Change(PaneSight& sight, Keeps keeps = Keeps::Nothing);
    ~Change();
    Q_DISABLE_COPY_MOVE(Change)

   private:
    PaneSight& sight_;
  };

  /// The pane's document has a PaneLayout, this one and any later one. The pane
  /// outlives this.
  explicit PaneSight(QTextEdit& pane);

  /// While true the pane's bars move without the pane's scrolling.
  [[nodiscard]] bool isChanging() const { return depth_ > 0; }
  /// Looks at the newest line, from the end of the change on.
  void follow() { follows_ = true; }
  /// For the pane's paint event, before it paints.
  void layOutForPaint();
  /// Lays out a little of what is out of sight and of uncertain height. Answers
  /// whether more is left.
  [[nodiscard]] bool refine(int milliseconds);

 private:
  [[nodiscard]] PaneLayout& layout() const;
  void noteBar();
  void takeCursors();
  void begin(Keeps keeps);
  void end();
  /// Pixels down to where the sight begins.
  [[nodiscard]] qreal wantedTop() const;
  [[nodiscard]] qreal lineTop(int position) const;
  void repaint(int top);
  /// From where on appended text may have changed what was there, in pixels.
  [[nodiscard]] qreal changedTop() const;

  QTextEdit& pane_;
  QObject bars_;  ///< of whom the bars' signals are received, no longer than this lives
  bool follows_ = true;
  int depth_ = 0;
  Keeps keeps_ = Keeps::Nothing;
  QTextCursor topLine_;  ///< the line at the top of the sight
  int topPosition_ = 0;  ///< its place before the change
  qreal above_ = 0;      ///< how much of it is above the sight, in pixels
  int across_ = 0;       ///< where the horizontal bar was before the change
  int shown_ = 0;        ///< where the sight began when it was last painted or changed
  QTextCursor textEnd_;  ///< the end of the text before the change
};

}  // namespace kelmora::terminal

#pragma once

#include <QObject>
#include <QTextCursor>
#include <array>

class QTextEdit;

namespace kelmora::terminal {

class PaneLayout;

/// Decides which part of its document a pane shows. It shows the newest line, also
/// when the text, the pane's size or its font changes, until the player scrolls up;
/// from then on the line at the top stays there. Lays out only what is visible.
class PaneSight {
 public:
  /// What a change leaves as it is on the screen.
  enum class Keeps {
    /// The existing text: some is appended, and paragraphs at the top may go.
    Text,
    Nothing
  };

  /// Exists while the text or its layout is being changed. Its destructor scrolls
  /// to where the pane should look. Changes may be nested.
  class Change {
   public:
    explicit Change(PaneSight& sight, Keeps keeps = Keeps::Nothing);
    ~Change();
    Q_DISABLE_COPY_MOVE(Change)

   private:
    PaneSight& sight_;
  };

  /// The pane outlives this. Each document that it ever has must have a PaneLayout.
  explicit PaneSight(QTextEdit& pane);

  /// During a change the pane must not scroll when its scroll bars move.
  [[nodiscard]] bool isChanging() const { return depth_ > 0; }
  /// Shows the newest line from the end of the current change on.
  void follow() { follows_ = true; }
  /// Brings a place in the document, counted in characters, into the upper half of
  /// the view, or as near to it as the document's ends allow.
  void goTo(int position);
  /// Whether it shows the newest line.
  [[nodiscard]] bool follows() const { return follows_; }

  /// Call this during a change. The reader, the sight of another view of the same
  /// document, begins where this one is now. From then on a change of either is a
  /// change of both.
  void goWith(PaneSight& reader);
  /// Ends that. Does nothing for a sight that this one does not go with.
  void goAlone(PaneSight& reader);

  /// Call this in the pane's paint event, before it paints.
  void layOutForPaint();
  /// Spends so many milliseconds on laying out what is out of sight and has only an
  /// uncertain height. Returns whether there is more of it.
  [[nodiscard]] bool refine(int milliseconds);

 private:
  [[nodiscard]] PaneLayout& layout() const;
  void noteBar();
  void takeCursors();
  void enter(Keeps keeps);
  void leave();
  void begin(Keeps keeps);
  void end();
  /// This sight and the one that it goes with, if any. The reader comes first,
  /// because what is laid out for it moves what is below.
  [[nodiscard]] std::array<PaneSight*, 2> all();
  /// Frees the lines that are near neither.
  void keepNear();
  /// The height in the document that should be at the top of the view, in pixels.
  [[nodiscard]] qreal wantedTop() const;
  [[nodiscard]] qreal lineTop(int position) const;
  void repaint(int top);
  /// The height, in pixels, below which appended text may have changed the lines
  /// that were there before.
  [[nodiscard]] qreal changedTop() const;

  QTextEdit& pane_;
  QObject connections_;  ///< ends the connections to the scroll bar when it is destroyed
  bool follows_ = true;  ///< whether the newest line is shown
  int depth_ = 0;
  Keeps keeps_ = Keeps::Nothing;
  QTextCursor topLine_;  ///< in the line at the top of the view
  int topPosition_ = 0;  ///< its position before the change
  qreal above_ = 0;      ///< how much of that line is above the view, in pixels
  int across_ = 0;       ///< the horizontal bar's value before the change
  int shown_ = 0;        ///< the vertical bar's value at the last paint or change
  QTextCursor textEnd_;  ///< the end of the text before the change
  // The other view of the same document, if there is one: of two sights that go
  // together, one has a reader and the other is it.
  PaneSight* reader_ = nullptr;
  PaneSight* followed_ = nullptr;
};

}  // namespace kelmora::terminal

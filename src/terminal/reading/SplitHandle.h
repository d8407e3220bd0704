#pragma once

#include <QWidget>
#include <functional>

class QAbstractScrollArea;

namespace kelmora::terminal {

/// The strip between the view of earlier text and the newest lines, by which the
/// border between them is dragged, or moved by the arrow keys.
class SplitHandle : public QWidget {
  Q_OBJECT

 public:
  static constexpr int thickness = 6;  // pixels

  /// A hidden child of the pane. Where it is dragged to is told in pixels from the
  /// top of the pane's text.
  SplitHandle(QAbstractScrollArea& pane, std::function<void(int height)> dragged);

  /// Puts its upper edge to this height over the pane's text, in pixels.
  void place(int height);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QAbstractScrollArea& pane_;
  std::function<void(int height)> dragged_;
  int grip_ = 0;  ///< where it was taken, in pixels below its upper edge
};

}  // namespace kelmora::terminal

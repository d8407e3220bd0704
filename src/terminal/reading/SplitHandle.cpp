#include "terminal/reading/SplitHandle.h"

#include <QAbstractScrollArea>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "terminal/reading/DesktopPalette.h"

namespace kelmora::terminal {

SplitHandle::SplitHandle(QAbstractScrollArea& pane, std::function<void(int height)> dragged)
    : QWidget(&pane), pane_(pane), dragged_(std::move(dragged)) {
  hide();
  setPalette(desktopPalette());
  setCursor(Qt::SplitVCursor);
  setFocusPolicy(Qt::TabFocus);
  setToolTip(tr("Drag or use the arrow keys to divide the pane; Escape closes the upper part"));
  setAccessibleName(tr("Border of the earlier game text"));
}

void SplitHandle::place(int height) {
  // The pane's bar is at the viewport's left or right.
  const int frame = pane_.frameWidth();
  setGeometry(frame, pane_.viewport()->y() + height, pane_.width() - 2 * frame, thickness);
}

void SplitHandle::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(hasFocus() ? QPalette::Highlight : QPalette::Button));
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(0, 0, width(), 0);
  painter.drawLine(0, height() - 1, width(), height() - 1);
}

void SplitHandle::mousePressEvent(QMouseEvent* event) {
  grip_ = qRound(event->position().y());
}

void SplitHandle::mouseMoveEvent(QMouseEvent* event) {
  const int inPane = mapTo(&pane_, event->position().toPoint()).y();
  dragged_(inPane - grip_ - pane_.viewport()->y());
}

void SplitHandle::keyPressEvent(QKeyEvent* event) {
  const int line = QFontMetrics(pane_.font()).lineSpacing();
  const int height = y() - pane_.viewport()->y();
  if (event->key() == Qt::Key_Up)
    dragged_(std::max(height - line, 2 * line));  // with less the view would close
  else if (event->key() == Qt::Key_Down)
    dragged_(height + line);
  else
    QWidget::keyPressEvent(event);
}

}  // namespace kelmora::terminal

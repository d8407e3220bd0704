#include "terminal/reading/SplitHandle.h"

#include <QAbstractScrollArea>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

#include "terminal/reading/DesktopPalette.h"

namespace kelmora::terminal {

SplitHandle::SplitHandle(QAbstractScrollArea& pane, std::function<void(int height)> dragged)
    : QWidget(&pane), pane_(pane), dragged_(std::move(dragged)) {
  hide();
  setPalette(desktopPalette());
  setCursor(Qt::SplitVCursor);
  setToolTip(tr("Drag to divide the pane; Escape closes the upper part"));
}

void SplitHandle::place(int height) {
  const QRect inside = pane_.viewport()->geometry();
  setGeometry(inside.left(), inside.top() + height, pane_.width() - 2 * inside.left(), thickness);
}

void SplitHandle::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Button));
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

}  // namespace kelmora::terminal

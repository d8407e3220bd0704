#include "terminal/reading/ReadBack.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBrowser>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <functional>

#include "terminal/reading/PaneSight.h"
#include "terminal/reading/ReadBackView.h"
#include "terminal/reading/SplitHandle.h"

namespace kelmora::terminal {

namespace {

/// What a key does to the bar of a text that is only read.
QAbstractSlider::SliderAction scrollOf(const QKeyEvent& press) {
  if ((press.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
    return QAbstractSlider::SliderNoAction;
  switch (press.key()) {
    case Qt::Key_Up:
      return QAbstractSlider::SliderSingleStepSub;
    case Qt::Key_Down:
      return QAbstractSlider::SliderSingleStepAdd;
    case Qt::Key_PageUp:
      return QAbstractSlider::SliderPageStepSub;
    case Qt::Key_PageDown:
      return QAbstractSlider::SliderPageStepAdd;
    case Qt::Key_Home:
      return QAbstractSlider::SliderToMinimum;
    case Qt::Key_End:
      return QAbstractSlider::SliderToMaximum;
    default:
      return QAbstractSlider::SliderNoAction;
  }
}

}  // namespace

ReadBack::ReadBack(QTextBrowser& pane, PaneSight& sight) : pane_(pane), sight_(sight) {
  // Wheel, bar and keys all arrive here; what the program moves does not.
  connect(pane_.verticalScrollBar(), &QScrollBar::actionTriggered, this,
          [this] { hasScrolled_ = true; });
  pane_.verticalScrollBar()->parentWidget()->installEventFilter(this);
  pane_.installEventFilter(this);
  pane_.viewport()->installEventFilter(this);
}

ReadBack::~ReadBack() {
  delete view_;
  delete handle_;
}

bool ReadBack::eventFilter(QObject* watched, QEvent* event) {
  // The toolkit raises a bar above all else whenever it lays a scroll area out.
  if (event->type() == QEvent::ZOrderChange && watched != &pane_ && watched != pane_.viewport())
    raise();
  return takesOver(watched, event) || QObject::eventFilter(watched, event);
}

bool ReadBack::takesOver(QObject* watched, QEvent* event) {
  if (!view_)
    return false;
  if (watched == &pane_ && event->type() == QEvent::KeyPress) {
    const auto scroll = scrollOf(*static_cast<QKeyEvent*>(event));
    if (scroll == QAbstractSlider::SliderNoAction)
      return false;
    view_->verticalScrollBar()->triggerAction(scroll);
    return true;
  }
  // With Ctrl the wheel is for the size of the letters.
  if (watched == pane_.viewport() && event->type() == QEvent::Wheel &&
      !static_cast<QWheelEvent*>(event)->modifiers().testFlag(Qt::ControlModifier)) {
    QCoreApplication::sendEvent(view_->viewport(), event);
    return true;
  }
  return false;
}

void ReadBack::raise() {
  if (!view_)
    return;
  view_->raise();
  handle_->raise();
  Q_EMIT raised();
}

QWidget* ReadBack::border() const {
  return handle_;
}

void ReadBack::beforeText() {
  const bool wasScrolled = std::exchange(hasScrolled_, false) && !sight_.follows();
  if (wasScrolled && !view_ && canOpen())
    open();
}

bool ReadBack::canOpen() const {
  return isWanted() && pane_.verticalScrollBar()->maximum() > 0;
}

void ReadBack::open() {
  view_ = new ReadBackView(pane_, sight_);
  handle_ = new SplitHandle(pane_, [this](int height) {
    setShare(static_cast<double>(height) / std::max(pane_.viewport()->height(), 1));
  });
  connect(view_, &ReadBackView::endReached, this, &ReadBack::close);
  auto* const escape = new QShortcut(QKeySequence(Qt::Key_Escape), view_);
  connect(escape, &QShortcut::activated, this, &ReadBack::close);
  layOut();
  // The view has taken on the text, and with that the pane may have found that all fits.
  if (!view_)
    return;
  view_->show();
  handle_->show();
  Q_EMIT opened();
  view_->takePlaceOfPane();
}

void ReadBack::goTo(int position) {
  if (view_) {
    view_->goTo(position);
    if (view_->isAtEnd())
      close();
    return;
  }
  sight_.goTo(position);
  hasScrolled_ = true;
}

void ReadBack::close() {
  if (!view_)
    return;
  hasScrolled_ = false;
  // The view may be on its way through an event of its own.
  std::exchange(view_, nullptr)->retire();
  std::exchange(handle_, nullptr)->deleteLater();
  pane_.verticalScrollBar()->setValue(pane_.verticalScrollBar()->maximum());
  Q_EMIT closed();
}

void ReadBack::layOut() {
  if (!view_)
    return;
  if (!canOpen()) {
    close();
    return;
  }
  const int height = coveredHeight();
  view_->cover(height);
  handle_->place(height);
  raise();
}

void ReadBack::beforeDocument(QTextDocument& document) {
  if (view_)
    view_->showDocument(document);
}

void ReadBack::setShare(double share) {
  share_ = std::clamp(share, 0.0, 1.0);
  layOut();
}

int ReadBack::leastHeight() const {
  return 2 * QFontMetrics(pane_.font()).lineSpacing();
}

int ReadBack::coveredHeight() const {
  // At least two of the newest lines stay in sight.
  const int all = pane_.viewport()->height();
  return std::min(static_cast<int>(std::lround(share_ * all)),
                  all - leastHeight() - SplitHandle::thickness);
}

bool ReadBack::isWanted() const {
  return coveredHeight() >= leastHeight();
}

}  // namespace kelmora::terminal

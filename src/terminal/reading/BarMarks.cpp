#include "terminal/reading/BarMarks.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <utility>

namespace kelmora::terminal {

BarMarks::BarMarks(QScrollBar& bar) : QWidget(&bar), bar_(bar) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setGeometry(bar_.rect());
  bar_.installEventFilter(this);
  show();
}

bool BarMarks::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize)
    setGeometry(bar_.rect());
  return QWidget::eventFilter(watched, event);
}

void BarMarks::setPlaces(std::vector<double> places) {
  if (places == places_)
    return;
  places_ = std::move(places);
  update();
}

QRect BarMarks::groove() const {
  QStyleOptionSlider option;
  option.initFrom(&bar_);
  option.orientation = Qt::Vertical;
  option.minimum = bar_.minimum();
  option.maximum = bar_.maximum();
  option.pageStep = bar_.pageStep();
  option.subControls = QStyle::SC_All;
  return bar_.style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarGroove,
                                      &bar_);
}

void BarMarks::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRect inside = groove();
  constexpr int thickness = 2;
  int last = -1;
  for (const double place : places_) {
    const int y = inside.top() + static_cast<int>(place * (inside.height() - thickness));
    if (std::exchange(last, y) != y)
      painter.fillRect(inside.left() + 2, y, inside.width() - 4, thickness, QColor(224, 120, 0));
  }
}

}  // namespace kelmora::terminal

#include "WindowWatch.h"

#include <QInputDevice>
#include <QKeyEvent>
#include <algorithm>

namespace {

using namespace std::chrono_literals;

constexpr auto keyPace = 5ms;

double milliseconds(WindowWatch::Clock::duration duration) {
  return std::chrono::duration<double, std::milli>(duration).count();
}

/// A key press carries the moment at which it was due.
quint64 stampOf(WindowWatch::Moment moment) {
  return static_cast<quint64>(moment.time_since_epoch().count());
}
WindowWatch::Moment momentOf(quint64 stamp) {
  return WindowWatch::Moment(WindowWatch::Clock::duration(static_cast<qint64>(stamp)));
}

double percentile(const std::vector<double>& sorted, double part) {
  if (sorted.empty())
    return 0;
  const auto last = static_cast<double>(sorted.size() - 1);
  return sorted[static_cast<std::size_t>(part * last)];
}

}  // namespace

WindowWatch::WindowWatch(QWidget& pane, QWidget& inputBar) : pane_(pane), inputBar_(inputBar) {
  pane_.installEventFilter(this);
  inputBar_.installEventFilter(this);
  pulse_.setTimerType(Qt::PreciseTimer);
  connect(&pulse_, &QTimer::timeout, this, [this] {
    const Moment now = Clock::now();
    longestStall_ = std::max(longestStall_, now - lastPulse_);
    lastPulse_ = now;
  });
}

WindowWatch::~WindowWatch() {
  (void)finish();
}

void WindowWatch::start() {
  longestStall_ = {};
  delays_.clear();
  lastPulse_ = Clock::now();
  pulse_.start(1ms);
  pressing_ = true;
  // The toolkit makes the keyboard's record at its first use, in that thread.
  (void)QInputDevice::primaryKeyboard();
  presser_ = std::thread([this] { pressKeys(); });
}

void WindowWatch::pressKeys() {
  Moment due = Clock::now();
  for (int number = 0; pressing_; ++number) {
    due += keyPace;
    std::this_thread::sleep_until(due);
    // A letter and its removal in turn, so that the line stays short.
    auto* press = number % 2 == 0
                      ? new QKeyEvent(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, "x")
                      : new QKeyEvent(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    press->setTimestamp(stampOf(due));
    QCoreApplication::postEvent(&inputBar_, press);
  }
}

WindowWatch::Figures WindowWatch::finish() {
  if (pulse_.isActive())
    longestStall_ = std::max(longestStall_, Clock::now() - lastPulse_);
  pulse_.stop();
  pressing_ = false;
  if (presser_.joinable())
    presser_.join();
  std::sort(delays_.begin(), delays_.end());
  return {.longestStall = milliseconds(longestStall_),
          .keyMedian = percentile(delays_, 0.5),
          .key99 = percentile(delays_, 0.99),
          .keyLongest = percentile(delays_, 1),
          .keys = delays_.size()};
}

bool WindowWatch::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Paint)
    (watched == &pane_ ? panePaints_ : barPaints_) = true;
  else if (event->type() == QEvent::KeyPress && watched == &inputBar_)
    pressed_.push_back(momentOf(static_cast<QKeyEvent*>(event)->timestamp()));
  return false;
}

void WindowWatch::eventDone() {
  if (!panePaints_ && !barPaints_)
    return;
  const Moment now = Clock::now();
  if (panePaints_)
    panePainted_ = now;
  if (barPaints_) {
    for (const Moment& moment : pressed_)
      delays_.push_back(milliseconds(now - moment));
    pressed_.clear();
  }
  panePaints_ = false;
  barPaints_ = false;
}

bool WatchedApplication::notify(QObject* receiver, QEvent* event) {
  ++depth_;
  const bool taken = QApplication::notify(receiver, event);
  if (--depth_ == 0 && watch_)
    watch_->eventDone();
  return taken;
}

#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <atomic>
#include <chrono>
#include <optional>
#include <thread>
#include <vector>

/// Looks at a window from inside its process: when it is painted, how long its
/// event loop stands still, and how long a key press takes to be seen.
class WindowWatch : public QObject {
 public:
  using Clock = std::chrono::steady_clock;
  using Moment = Clock::time_point;

  struct Figures {
    double longestStall = 0;
    double keyMedian = 0;
    double key99 = 0;
    double keyLongest = 0;
    std::size_t keys = 0;
  };

  WindowWatch(QWidget& pane, QWidget& inputBar);
  ~WindowWatch() override;

  /// From here on stalls are noted and another thread presses keys in the input
  /// bar, one every few milliseconds whether the window keeps up or not.
  void start();
  /// Milliseconds since start(). Ends the key presses.
  [[nodiscard]] Figures finish();

  /// The outermost event is through, and with it all painting that it did.
  void eventDone();
  /// When the last event ended that painted the pane; nothing before the first.
  [[nodiscard]] std::optional<Moment> panePainted() const { return panePainted_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void pressKeys();

  QWidget& pane_;
  QWidget& inputBar_;
  bool panePaints_ = false;
  bool barPaints_ = false;
  std::optional<Moment> panePainted_;
  QTimer pulse_;
  Moment lastPulse_;
  Clock::duration longestStall_{};
  std::vector<Moment> pressed_;  ///< taken by the bar, not yet seen
  std::vector<double> delays_;
  std::atomic<bool> pressing_ = false;
  std::thread presser_;
};

/// Tells the watch of the end of every event that came from the event loop.
class WatchedApplication : public QApplication {
 public:
  using QApplication::QApplication;

  void setWatch(WindowWatch* watch) { watch_ = watch; }
  bool notify(QObject* receiver, QEvent* event) override;

 private:
  WindowWatch* watch_ = nullptr;
  int depth_ = 0;
};

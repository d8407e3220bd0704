// Measures the cost of a rule in processor time.
#pragma once

#include <QtGlobal>
#include <ctime>

/// Measures what this process has computed, not what has passed: a bound on
/// the cost of a rule holds on a busy machine too.
class ProcessorClock {
 public:
  void start() { start_ = std::clock(); }
  /// Milliseconds of processor time.
  [[nodiscard]] qint64 elapsed() const {
    return static_cast<qint64>(std::clock() - start_) * 1000 / CLOCKS_PER_SEC;
  }

 private:
  std::clock_t start_ = std::clock();
};

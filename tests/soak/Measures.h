#pragma once

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cstdio>
#include <unistd.h>
#include <vector>

#include "app/PlayWindow.h"
#include "support/Settled.h"

using namespace kelmora;
using namespace kelmora::app;

/// One thing that could grow without end, and by how much it may.
struct Measure {
  const char* name;
  qint64 (*of)(const PlayWindow& play);
  /// How far its highest value of the last quarter may lie above that of the
  /// second quarter.
  qint64 bound;
};

inline qint64 residentKibibytes() {
  QFile file(QStringLiteral("/proc/self/statm"));
  if (!file.open(QIODevice::ReadOnly))
    return 0;
  return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE) / 1024;
}

// A sanitizer keeps what was freed.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr qint64 memoryBound = 1024 * 1024;
#else
inline constexpr qint64 memoryBound = 8 * 1024;
#endif

inline const std::array<Measure, 7> measures{{
    {"RSS KiB", [](const PlayWindow&) { return residentKibibytes(); }, memoryBound},
    {"descriptors",
     [](const PlayWindow&) {
       return qint64{QDir(QStringLiteral("/proc/self/fd"))
                         .entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot)
                         .size()};
     },
     4},
    {"objects",
     [](const PlayWindow& play) { return qint64{play.window->findChildren<QObject*>().size()}; },
     16},
    {"timers",
     [](const PlayWindow& play) { return qint64{play.window->findChildren<QTimer*>().size()}; }, 8},
    {"widgets", [](const PlayWindow&) { return qint64{QApplication::allWidgets().size()}; }, 8},
    {"formats",
     [](const PlayWindow& play) {
       return qint64{settled(*play.pane).document()->allFormats().size()};
     },
     OutputWidget::limits.formats},
    {"paragraphs",
     [](const PlayWindow& play) { return qint64{settled(*play.pane).document()->blockCount()}; },
     0},
}};

/// What was measured over the whole time.
class History {
 public:
  using Row = std::array<qint64, measures.size()>;

  static void printHead() {
    std::printf("%8s", "second");
    for (const Measure& measure : measures)
      std::printf(" %12s", measure.name);
    std::printf("\n");
  }

  void take(const PlayWindow& play) {
    Row row{};
    std::transform(measures.begin(), measures.end(), row.begin(),
                   [&](const Measure& measure) { return measure.of(play); });
    rows_.push_back(row);
  }
  void printLast(qint64 second) const {
    std::printf("%8lld", static_cast<long long>(second));
    for (const qint64 value : rows_.back())
      std::printf(" %12lld", static_cast<long long>(value));
    std::printf("\n");
    std::fflush(stdout);
  }
  /// Tells of each measure whether it kept within its bound; true if all did.
  [[nodiscard]] bool judge() const {
    bool steady = rows_.size() >= 8;
    if (!steady)
      std::printf("too few measurements: %zu\n", rows_.size());
    const std::size_t quarter = rows_.size() / 4;
    for (std::size_t i = 0; i < measures.size(); ++i) {
      const qint64 before = highest(i, quarter, 2 * quarter);
      const qint64 after = highest(i, rows_.size() - quarter, rows_.size());
      const bool kept = after - before <= measures[i].bound;
      std::printf(
          "%-12s second quarter up to %lld, last quarter up to %lld, may grow by %lld: %s\n",
          measures[i].name, static_cast<long long>(before), static_cast<long long>(after),
          static_cast<long long>(measures[i].bound), kept ? "steady" : "GROWS");
      steady = steady && kept;
    }
    return steady;
  }

 private:
  [[nodiscard]] qint64 highest(std::size_t measure, std::size_t from, std::size_t to) const {
    qint64 value = 0;
    for (std::size_t row = from; row < to; ++row)
      value = std::max(value, rows_[row][measure]);
    return value;
  }

  std::vector<Row> rows_;
};

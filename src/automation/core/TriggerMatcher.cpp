#include "automation/core/TriggerMatcher.h"

#include <algorithm>
#include <utility>

namespace kelmora::automation {

namespace {

/// A needle is the first bytes of a pattern's required ones. So many bytes tell
/// patterns apart well enough; where some share a needle, all of them are tried.
constexpr qsizetype longestNeedle = 32;
/// The most bytes of all needles together, so that the search takes no more than
/// some tens of megabytes of memory. Triggers beyond that are tried for every line.
constexpr qsizetype mostNeedleBytes = 1 << 20;

}  // namespace

/// Which patterns are looked for by a needle, and which are always tried.
struct TriggerMatcher::Plan {
  std::vector<TriggerPattern> patterns = {};
  std::vector<QByteArray> needles = {};
  std::vector<quint32> positions = {};
  std::vector<quint32> always = {};
  qsizetype needleBytes = 0;

  explicit Plan(const QList<TriggerEntry>& entries) {
    patterns.reserve(static_cast<std::size_t>(entries.size()));
    for (const TriggerEntry& entry : entries)
      add(TriggerPattern(entry.pattern));
  }

  void add(TriggerPattern pattern) {
    const auto position = static_cast<quint32>(patterns.size());
    const QByteArray needle = pattern.requiredBytes().left(longestNeedle);
    if (pattern.canMatch()) {
      if (needle.isEmpty() || needleBytes + needle.size() > mostNeedleBytes) {
        always.push_back(position);
      } else {
        needleBytes += needle.size();
        needles.push_back(needle);
        positions.push_back(position);
      }
    }
    patterns.push_back(std::move(pattern));
  }
};

TriggerMatcher::TriggerMatcher(const QList<TriggerEntry>& entries)
    : TriggerMatcher(Plan(entries)) {}

TriggerMatcher::TriggerMatcher(Plan plan)
    : patterns_(std::move(plan.patterns)),
      search_(plan.needles),
      positions_(std::move(plan.positions)),
      always_(std::move(plan.always)) {}

std::vector<quint32> TriggerMatcher::candidates(const TriggerLine& line) const {
  std::vector<quint32> positions;
  search_.find(line.bytes(), positions);
  for (quint32& position : positions)
    position = positions_[position];
  positions.insert(positions.end(), always_.begin(), always_.end());
  std::sort(positions.begin(), positions.end());
  return positions;
}

}  // namespace kelmora::automation

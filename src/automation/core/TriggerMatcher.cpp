#include "automation/core/TriggerMatcher.h"

#include <algorithm>
#include <utility>

namespace kelmora::automation {

namespace {

/// A needle this long tells patterns apart well enough; the few that share one
/// are tried in full.
constexpr qsizetype needleLength = 32;
/// Bounds the search to a few tens of megabytes; the triggers beyond it
/// are tried one by one.
constexpr qsizetype needleBytes = 1 << 20;

}  // namespace

/// Which patterns the search stands for and which are always tried.
struct TriggerMatcher::Plan {
  std::vector<TriggerPattern> patterns = {};
  std::vector<QByteArray> needles = {};
  std::vector<quint32> positions = {};
  std::vector<quint32> always = {};
  qsizetype bytes = 0;

  explicit Plan(const QList<TriggerEntry>& entries) {
    patterns.reserve(static_cast<std::size_t>(entries.size()));
    for (const TriggerEntry& entry : entries)
      add(TriggerPattern(entry.pattern));
  }

  void add(TriggerPattern pattern) {
    const auto position = static_cast<quint32>(patterns.size());
    const QByteArray needle = pattern.requiredBytes().left(needleLength);
    if (pattern.canMatch()) {
      if (needle.isEmpty() || bytes + needle.size() > needleBytes) {
        always.push_back(position);
      } else {
        bytes += needle.size();
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

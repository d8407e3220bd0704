#pragma once

#include <QList>
#include <vector>

#include "automation/core/ByteSearch.h"
#include "automation/core/Entries.h"
#include "automation/core/TriggerPattern.h"

namespace kelmora::automation {

/// The patterns of a whole trigger table, compiled together. One search through a
/// line, for a piece of each pattern that every matching line must hold, tells the
/// few patterns that are worth trying. It never changes once it is built.
class TriggerMatcher {
 public:
  explicit TriggerMatcher(const QList<TriggerEntry>& entries);

  /// The positions of the entries that may match the line, in ascending order. All
  /// entries that do match it are among them.
  [[nodiscard]] std::vector<quint32> candidates(const TriggerLine& line) const;

  [[nodiscard]] const TriggerPattern& pattern(quint32 position) const {
    return patterns_[position];
  }

 private:
  struct Plan;
  explicit TriggerMatcher(Plan plan);

  std::vector<TriggerPattern> patterns_;
  ByteSearch search_;
  std::vector<quint32> positions_;  // the entry of each needle of the search
  std::vector<quint32> always_;     // the entries without a needle, ascending
};

}  // namespace kelmora::automation

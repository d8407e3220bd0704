#pragma once

#include <QList>
#include <vector>

#include "automation/core/ByteSearch.h"
#include "automation/core/Entries.h"
#include "automation/core/TriggerPattern.h"

namespace kelmora::automation {

/// The patterns of a whole trigger table, compiled together: one search over
/// the line names the few patterns worth trying. Never changes once built.
class TriggerMatcher {
 public:
  explicit TriggerMatcher(const QList<TriggerEntry>& entries);

  /// The positions of the entries that the line may match, ascending; every
  /// entry that it does match is among them.
  [[nodiscard]] std::vector<quint32> candidates(const TriggerLine& line) const;

  [[nodiscard]] const TriggerPattern& pattern(quint32 position) const {
    return patterns_[position];
  }

 private:
  struct Plan;
  explicit TriggerMatcher(Plan plan);

  std::vector<TriggerPattern> patterns_;
  ByteSearch search_;
  std::vector<quint32> positions_;  // of each needle of the search
  std::vector<quint32> always_;     // those that no needle stands for, ascending
};

}  // namespace kelmora::automation

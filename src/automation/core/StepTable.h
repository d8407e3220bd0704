#pragma once

#include <array>
#include <vector>

#include "automation/core/NeedleAutomaton.h"

namespace kelmora::automation {

/// All steps of an automaton in one table, so that a step is one look, without any
/// fallback. It has a row for each state and a column for each byte that stands in
/// a needle; all other bytes share one column.
class StepTable {
 public:
  /// Stays empty where the table would be larger than 4 MiB.
  explicit StepTable(const NeedleAutomaton& automaton);

  [[nodiscard]] bool isEmpty() const { return steps_.empty(); }

  struct Step {
    quint32 state;
    bool isMatch;  ///< whether needles end here
  };
  [[nodiscard]] Step step(quint32 state, char byte) const {
    const quint32 entry = steps_[state * columnCount_ + columns_[static_cast<unsigned char>(byte)]];
    return {entry & ~matchBit, (entry & matchBit) != 0};
  }

 private:
  static constexpr quint32 matchBit = 0x80000000;

  void addRow(const NeedleAutomaton& automaton, quint32 state);

  std::vector<quint32> steps_;             // row by row: a state, with matchBit where it is a match
  std::array<quint16, 256> columns_ = {};  // of each byte
  std::size_t columnCount_ = 1;
};

}  // namespace kelmora::automation

#include "automation/core/StepTable.h"

#include <algorithm>

namespace kelmora::automation {

StepTable::StepTable(const NeedleAutomaton& automaton) {
  constexpr std::size_t mostSteps = std::size_t{4} * 1024 * 1024 / sizeof(quint32);
  const NeedleTree& tree = automaton.tree();
  for (quint32 node = 1; node < tree.size(); ++node)
    columns_[static_cast<unsigned char>(tree.label(node))] = 1;
  for (quint16& column : columns_)
    if (column != 0)
      column = static_cast<quint16>(columnCount_++);
  if (tree.size() * columnCount_ > mostSteps)
    return;
  steps_.assign(tree.size() * columnCount_, 0);
  for (quint32 state = 0; state < tree.size(); ++state)
    addRow(automaton, state);
}

void StepTable::addRow(const NeedleAutomaton& automaton, quint32 state) {
  const auto rowOf = [this](quint32 of) {
    return steps_.begin() + static_cast<std::ptrdiff_t>(of * columnCount_);
  };
  const auto row = rowOf(state);
  // Where the state has no child, a step is that of its fallback, whose row is
  // there already: it is of a level above.
  if (state != 0)
    std::copy_n(rowOf(automaton.fallback(state)), columnCount_, row);
  const NeedleTree& tree = automaton.tree();
  for (quint32 next = tree.firstChild(state); next < tree.endOfChildren(state); ++next)
    row[columns_[static_cast<unsigned char>(tree.label(next))]] =
        automaton.match(next) != 0 ? next | matchBit : next;
}

}  // namespace kelmora::automation

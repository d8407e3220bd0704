#include "automation/core/ByteSearch.h"

namespace kelmora::automation {

/// Reports the needles that end in a state, each of them once.
class ByteSearch::Findings {
 public:
  Findings(const NeedleAutomaton& automaton, std::vector<quint32>& found)
      : automaton_(automaton), found_(found) {}

  void add(quint32 state) {
    const NeedleTree& tree = automaton_.tree();
    // Most lines hold no needle and need no memory here.
    if (isSeen_.empty())
      isSeen_.resize(tree.needleCount());
    for (quint32 match = automaton_.match(state); match != 0; match = automaton_.nextMatch(match)) {
      // What comes behind this match was reported together with it.
      if (isSeen_[tree.firstNeedle(match)])
        return;
      isSeen_[tree.firstNeedle(match)] = true;
      const auto needles = tree.needlesAt(match);
      found_.insert(found_.end(), needles.begin(), needles.end());
    }
  }

 private:
  const NeedleAutomaton& automaton_;
  std::vector<quint32>& found_;
  std::vector<bool> isSeen_;  // by the first needle of a state
};

ByteSearch::ByteSearch(const std::vector<QByteArray>& needles)
    : starts_(needles), automaton_(needles), table_(automaton_) {}

template <typename Step>
void ByteSearch::walk(QByteArrayView text, Findings& findings, Step step) const {
  quint32 state = 0;
  for (const char* at = text.begin(); at != text.end(); ++at) {
    if (state == 0) {
      at = starts_.next(at, text.end());
      if (at == text.end())
        return;
    }
    const auto [next, isMatch] = step(state, *at);
    state = next;
    if (isMatch)
      findings.add(state);
  }
}

void ByteSearch::find(QByteArrayView text, std::vector<quint32>& found) const {
  Findings findings(automaton_, found);
  if (!table_.isEmpty()) {
    walk(text, findings, [this](quint32 state, char byte) { return table_.step(state, byte); });
    return;
  }
  walk(text, findings, [this](quint32 state, char byte) {
    const quint32 next = automaton_.step(state, byte);
    return StepTable::Step{next, automaton_.match(next) != 0};
  });
}

}  // namespace kelmora::automation

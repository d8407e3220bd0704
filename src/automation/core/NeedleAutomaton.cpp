#include "automation/core/NeedleAutomaton.h"

namespace kelmora::automation {

NeedleAutomaton::NeedleAutomaton(const std::vector<QByteArray>& needles)
    : tree_(needles), fallbacks_(tree_.size(), 0), matches_(tree_.size(), 0) {
  // The fallback of a state is of a level above its own, so it is known by then.
  // That of the root's children is the root.
  for (quint32 state = 0; state < tree_.size(); ++state) {
    matches_[state] = tree_.hasNeedles(state) ? state : nextMatch(state);
    for (quint32 next = tree_.firstChild(state); next < tree_.endOfChildren(state); ++next)
      if (state != 0)
        fallbacks_[next] = step(fallbacks_[state], tree_.label(next));
  }
}

quint32 NeedleAutomaton::step(quint32 state, char byte) const {
  while (true) {
    const quint32 next = tree_.child(state, byte);
    if (next != 0 || state == 0)
      return next;
    state = fallbacks_[state];
  }
}

}  // namespace kelmora::automation

#pragma once

#include <vector>

#include "automation/core/NeedleTree.h"

namespace kelmora::automation {

/// The automaton of Aho and Corasick: it reads a text once, byte by byte, and sees
/// all needles in it. Its states are the nodes of the tree. The state after some
/// text is the longest end of that text that begins a needle.
///
/// A state's fallback is the longest shorter end that begins a needle, too; where
/// no needle goes on with the next byte, one may go on from there. A state takes 8
/// bytes more than its node.
class NeedleAutomaton {
 public:
  explicit NeedleAutomaton(const std::vector<QByteArray>& needles);

  [[nodiscard]] const NeedleTree& tree() const { return tree_; }
  /// The state behind one more byte of the text. Over a whole text this takes two
  /// looks at the tree for each byte at most, for each fallback takes back a byte.
  [[nodiscard]] quint32 step(quint32 state, char byte) const;
  [[nodiscard]] quint32 fallback(quint32 state) const { return fallbacks_[state]; }

  /// The first state with needles on the way from this one, itself included, along
  /// the fallbacks: all needles that end here are those of these states. 0 where
  /// none ends here.
  [[nodiscard]] quint32 match(quint32 state) const { return matches_[state]; }
  /// The next such state behind a match.
  [[nodiscard]] quint32 nextMatch(quint32 match) const { return matches_[fallbacks_[match]]; }

 private:
  NeedleTree tree_;
  std::vector<quint32> fallbacks_;
  std::vector<quint32> matches_;
};

}  // namespace kelmora::automation

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <vector>

#include "automation/core/NeedleAutomaton.h"
#include "automation/core/NeedleStarts.h"
#include "automation/core/StepTable.h"

namespace kelmora::automation {

/// Finds in one pass over a text which of many byte strings, the needles, occur in
/// it. It leaps to the next place where a needle may begin, goes on from there with
/// the automaton, a step for each byte, and leaps again as soon as no needle goes
/// on. The steps are looked up in a table; only for many thousands of needles,
/// where the table would be too large, the automaton works them out.
class ByteSearch {
 public:
  /// A needle may come twice and may hold any byte. An empty one is never found.
  explicit ByteSearch(const std::vector<QByteArray>& needles);

  /// Adds the number of each needle that occurs to `found`, each of them once, in
  /// no particular order. Takes time in proportion to the text, and to what it finds.
  void find(QByteArrayView text, std::vector<quint32>& found) const;

 private:
  class Findings;

  template <typename Step>
  void walk(QByteArrayView text, Findings& findings, Step step) const;

  NeedleStarts starts_;
  NeedleAutomaton automaton_;
  StepTable table_;
};

}  // namespace kelmora::automation

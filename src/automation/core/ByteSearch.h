#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <array>
#include <vector>

namespace kelmora::automation {

/// Finds in one pass over a text which of many byte strings occur in it: the
/// automaton of Aho and Corasick, its states in breadth-first order so that the
/// children of a state are neighbours. About 17 bytes per state, and at most
/// one state per needle byte. Where it stays small, a table of all steps makes
/// each one a single look. Between needles it leaps: by the pair of bytes at
/// the end of where the shortest needle would stand, as Wu and Manber do.
class ByteSearch {
 public:
  /// The needles may repeat and hold any byte; an empty one is never found.
  explicit ByteSearch(const std::vector<QByteArray>& needles);

  /// Appends to `found` the number of each needle that occurs, each once, in no
  /// particular order. Takes time linear in the text, plus what it finds.
  void find(QByteArrayView text, std::vector<quint32>& found) const;

 private:
  struct Builder;
  struct State {
    quint32 firstChild = 0;
    quint32 fallback = 0;    // the longest proper suffix that is a state too
    quint32 output = 0;      // where its needles stand in outputs_, or 0
    quint32 nextOutput = 0;  // the longest suffix that has an output, or 0
  };
  struct Output {
    quint32 first = 0;
    quint32 count = 0;
  };

  /// The state for a step of the table, with this bit when needles end in it.
  static constexpr quint32 hitBit = 0x80000000;

  void makeLeaps(const std::vector<QByteArray>& needles);
  /// The first place from here on where a needle may begin, or the end.
  [[nodiscard]] const char* nextStart(const char* at, const char* end) const;
  void makeTable();
  /// Adds the needles that end in a state.
  void addNeedles(quint32 state, std::vector<bool>& seen, std::vector<quint32>& found) const;
  [[nodiscard]] quint32 child(quint32 state, char byte) const;
  [[nodiscard]] quint32 step(quint32 state, char byte) const;

  std::vector<State> states_;     // one more than there are, to end the last one's children
  std::vector<char> labels_;      // the byte that leads into each state
  std::vector<Output> outputs_;   // ranges of numbers_; the first stands for none
  std::vector<quint32> numbers_;  // the needles' numbers, sorted by their bytes
  std::array<quint32, 256> rootChildren_ = {};
  qsizetype shortest_ = 0;     // needle, in bytes
  std::vector<quint8> leaps_;  // by pairs of bytes; empty where a needle is shorter
  /// Steps by state and class of byte; empty where they would be too many. All
  /// bytes in no needle are one class.
  std::vector<quint32> table_;
  std::array<quint8, 256> classes_ = {};
  std::size_t classCount_ = 1;
};

}  // namespace kelmora::automation

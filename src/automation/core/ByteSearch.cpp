#include "automation/core/ByteSearch.h"

#include <algorithm>
#include <cstring>

namespace kelmora::automation {

namespace {

constexpr qsizetype pairLength = 2;

quint16 pairAt(const char* bytes) {
  quint16 pair = 0;
  std::memcpy(&pair, bytes, sizeof pair);
  return pair;
}

}  // namespace

/// Lays the states out level by level. A state stands for the sorted needles
/// that begin with its bytes.
struct ByteSearch::Builder {
  struct Range {
    std::size_t first;
    std::size_t last;
    qsizetype depth;
  };

  ByteSearch& search;
  const std::vector<QByteArray>& needles;
  std::vector<Range> ranges = {};

  [[nodiscard]] const QByteArray& needle(std::size_t place) const {
    return needles[search.numbers_[place]];
  }

  void sortNeedles() {
    auto& numbers = search.numbers_;
    for (quint32 number = 0; number < needles.size(); ++number)
      if (!needles[number].isEmpty())
        numbers.push_back(number);
    std::sort(numbers.begin(), numbers.end(),
              [&](quint32 a, quint32 b) { return needles[a] < needles[b]; });
  }

  void addState(const Range range) {
    State state;
    state.firstChild = static_cast<quint32>(ranges.size());
    // Those that end here sort before those that go on.
    std::size_t place = range.first;
    while (place < range.last && needle(place).size() == range.depth)
      ++place;
    if (place > range.first) {
      state.output = static_cast<quint32>(search.outputs_.size());
      search.outputs_.push_back(
          {static_cast<quint32>(range.first), static_cast<quint32>(place - range.first)});
    }
    while (place < range.last) {
      const std::size_t first = place;
      const char label = needle(first).at(range.depth);
      while (place < range.last && needle(place).at(range.depth) == label)
        ++place;
      search.labels_.push_back(label);
      ranges.push_back({first, place, range.depth + 1});
    }
    search.states_.push_back(state);
  }

  void addStates() {
    search.outputs_.push_back({});
    search.labels_.push_back('\0');
    ranges.push_back({0, search.numbers_.size(), 0});
    while (search.states_.size() < ranges.size())
      addState(ranges[search.states_.size()]);
    search.states_.push_back({.firstChild = static_cast<quint32>(ranges.size())});
  }

  void addRootChildren() {
    for (quint32 state = 1; state < search.states_[1].firstChild; ++state)
      search.rootChildren_[static_cast<unsigned char>(search.labels_[state])] = state;
  }

  void addFallbacks() {
    auto& states = search.states_;
    // The root's children fall back to the root, which is how they start out.
    for (quint32 state = 1; state < ranges.size(); ++state) {
      for (quint32 next = states[state].firstChild; next < states[state + 1].firstChild; ++next) {
        const quint32 fallback = search.step(states[state].fallback, search.labels_[next]);
        states[next].fallback = fallback;
        states[next].nextOutput =
            states[fallback].output != 0 ? fallback : states[fallback].nextOutput;
      }
    }
  }
};

ByteSearch::ByteSearch(const std::vector<QByteArray>& needles) {
  Builder builder{*this, needles};
  builder.sortNeedles();
  builder.addStates();
  builder.addRootChildren();
  builder.addFallbacks();
  makeLeaps(needles);
  makeTable();
}

void ByteSearch::makeLeaps(const std::vector<QByteArray>& needles) {
  if (numbers_.empty())
    return;
  constexpr qsizetype farthest = 255;
  const auto shorter = [&](quint32 a, quint32 b) { return needles[a].size() < needles[b].size(); };
  const quint32 shortest = *std::min_element(numbers_.begin(), numbers_.end(), shorter);
  shortest_ = std::min(needles[shortest].size(), farthest);
  if (shortest_ < pairLength)
    return;
  // A pair found nowhere in the needles' beginnings can only stand before one.
  leaps_.assign(std::size_t{1} << 16U, static_cast<quint8>(shortest_ - 1));
  for (const quint32 number : numbers_) {
    for (qsizetype place = 0; place <= shortest_ - pairLength; ++place) {
      quint8& leap = leaps_[pairAt(needles[number].constData() + place)];
      leap = std::min(leap, static_cast<quint8>(shortest_ - pairLength - place));
    }
  }
}

const char* ByteSearch::nextStart(const char* at, const char* end) const {
  if (leaps_.empty())
    return std::find_if(at, end, [this](char byte) {
      return rootChildren_[static_cast<unsigned char>(byte)] != 0;
    });
  while (end - at >= shortest_) {
    const quint8 leap = leaps_[pairAt(at + shortest_ - pairLength)];
    if (leap == 0)
      return at;
    at += leap;
  }
  return end;
}

void ByteSearch::makeTable() {
  constexpr std::size_t mostSteps = 1 << 20;  // 4 MiB
  for (std::size_t state = 1; state < labels_.size(); ++state)
    classes_[static_cast<unsigned char>(labels_[state])] = 1;
  for (quint8& number : classes_)
    if (number != 0)
      number = static_cast<quint8>(classCount_++);
  const std::size_t stateCount = states_.size() - 1;
  // With all 256 bytes in needles the numbers would not fit.
  if (classCount_ > 256 || stateCount * classCount_ > mostSteps)
    return;
  table_.assign(stateCount * classCount_, 0);
  const auto isHit = [this](quint32 state) {
    return states_[state].output != 0 || states_[state].nextOutput != 0;
  };
  // A state's fallback is one of a level before, so its steps are there.
  for (quint32 state = 0; state < stateCount; ++state) {
    const auto steps = table_.begin() + static_cast<std::ptrdiff_t>(state * classCount_);
    if (state != 0)
      std::copy_n(
          table_.begin() + static_cast<std::ptrdiff_t>(states_[state].fallback * classCount_),
          classCount_, steps);
    for (quint32 next = states_[state].firstChild; next < states_[state + 1].firstChild; ++next)
      steps[classes_[static_cast<unsigned char>(labels_[next])]] =
          isHit(next) ? next | hitBit : next;
  }
}

void ByteSearch::find(QByteArrayView text, std::vector<quint32>& found) const {
  if (numbers_.empty())
    return;
  std::vector<bool> seen;
  quint32 state = 0;
  for (const char* at = text.begin(); at != text.end(); ++at) {
    if (state == 0) {
      at = nextStart(at, text.end());
      if (at == text.end())
        break;
    }
    if (table_.empty()) {
      state = step(state, *at);
      if (states_[state].output != 0 || states_[state].nextOutput != 0)
        addNeedles(state, seen, found);
    } else {
      const quint32 next = table_[state * classCount_ + classes_[static_cast<unsigned char>(*at)]];
      state = next & ~hitBit;
      if (state != next)
        addNeedles(state, seen, found);
    }
  }
}

void ByteSearch::addNeedles(quint32 state, std::vector<bool>& seen,
                            std::vector<quint32>& found) const {
  quint32 hit = states_[state].output != 0 ? state : states_[state].nextOutput;
  for (; hit != 0; hit = states_[hit].nextOutput) {
    const quint32 output = states_[hit].output;
    if (seen.empty())
      seen.resize(outputs_.size());
    // Whatever follows an output was reported along with it.
    if (seen[output])
      break;
    seen[output] = true;
    const auto first = numbers_.begin() + outputs_[output].first;
    found.insert(found.end(), first, first + outputs_[output].count);
  }
}

quint32 ByteSearch::child(quint32 state, char byte) const {
  if (state == 0)
    return rootChildren_[static_cast<unsigned char>(byte)];
  const quint32 first = states_[state].firstChild;
  const quint32 count = states_[state + 1].firstChild - first;
  const char* const labels = labels_.data() + first;
  const void* const label = count == 0 ? nullptr : std::memchr(labels, byte, count);
  return label ? first + static_cast<quint32>(static_cast<const char*>(label) - labels) : 0;
}

quint32 ByteSearch::step(quint32 state, char byte) const {
  while (true) {
    const quint32 next = child(state, byte);
    if (next != 0 || state == 0)
      return next;
    state = states_[state].fallback;
  }
}

}  // namespace kelmora::automation

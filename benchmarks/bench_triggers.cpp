// What triggers, aliases and macros cost. Each figure is the median of several
// rounds over the same seeded input; beside it stands the plain way, measured
// in the same run: every trigger in turn with the C library's scanner, every
// entry in turn for a lookup.

#include <QElapsedTimer>
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <random>
#include <vector>

#include "automation/LiteralMatcher.h"
#include "automation/core/AliasTable.h"
#include "automation/core/MacroTable.h"
#include "automation/core/TriggerTable.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

constexpr int rounds = 9;
constexpr int lineCount = 500;
constexpr qsizetype lineLength = 80;

class CountingHost : public TriggerHost {
 public:
  void setVariable(const QString&, const QString&) override {}
  void runActions(const QStringList&) override { ++fired; }
  qint64 fired = 0;
};

/// Lines and patterns of the same seeded words, so that beginnings of patterns
/// occur in the lines as they do in a game.
class Words {
 public:
  explicit Words(quint32 seed) : random_(seed) {
    for (QByteArray& word : words_) {
      word.resize(2 + below(7));
      for (char& letter : word)
        letter = static_cast<char>('a' + below(26));
    }
  }

  [[nodiscard]] QByteArray text(qsizetype length) {
    QByteArray bytes;
    while (bytes.size() < length)
      bytes += words_[static_cast<std::size_t>(below(static_cast<int>(words_.size())))] + ' ';
    bytes.truncate(length);
    return bytes;
  }

  [[nodiscard]] int below(int limit) {
    return static_cast<int>(random_() % static_cast<quint32>(limit));
  }

 private:
  std::mt19937 random_;
  std::vector<QByteArray> words_ = std::vector<QByteArray>(400);
};

std::vector<QByteArray> lines() {
  Words words(1);
  std::vector<QByteArray> all(lineCount);
  for (QByteArray& line : all)
    line = words.text(lineLength);
  return all;
}

/// Triggers that no line matches: their upper-case ending never occurs.
TriggerTable triggers(int plain, int templates) {
  Words words(1);
  TriggerTable table;
  for (int number = 0; number < plain; ++number)
    table.append({QString::fromLatin1(words.text(20 + words.below(10)) + 'X'), {"plain"}});
  for (int number = 0; number < templates; ++number) {
    const QString literal = QString::fromLatin1(words.text(10).trimmed());
    table.append(
        {number % 2 == 0 ? "{*} " + literal + "X." : literal + "X {*} with {*}", {"word"}});
  }
  return table;
}

/// The median time of one of `count` operations, in microseconds.
template <typename Run>
double median(int count, Run run) {
  std::vector<double> times;
  run();
  for (int round = 0; round < rounds; ++round) {
    QElapsedTimer timer;
    timer.start();
    run();
    times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1000.0 / count);
  }
  std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
  return times[rounds / 2];
}

/// Prints a row of the table; the ratio is that to `reference`.
double triggerRow(const char* name, int plain, int templates, double reference) {
  static const std::vector<QByteArray> input = lines();
  TriggerTable table = triggers(plain, templates);
  CountingHost host;
  const double ours = median(lineCount, [&] {
    for (const QByteArray& line : input)
      table.check(line, host);
  });
  CountingHost literalHost;
  const double literally = median(lineCount, [&] {
    for (const QByteArray& line : input)
      literal::check(table.entries(), line, literalHost);
  });
  if (host.fired != 0 || literalHost.fired != 0)
    std::printf("A trigger fired: the figures are worthless.\n");
  std::printf("%-36s %10.3f us %12.2f us", name, ours, literally);
  if (reference > 0)
    std::printf(" %8.2f x", ours / reference);
  std::printf("\n");
  return ours;
}

void compileRow() {
  TriggerTable table = triggers(5000, 0);
  CountingHost host;
  const double built = median(1, [&] {
    table.append({"a last one X", {}});
    table.check("a line", host);
  });
  std::printf("%-36s %10.0f us\n", "first line after a change of 5,000", built);
}

template <typename Table, typename Key>
void lookupRow(const char* name, const Table& table, const std::vector<Key>& keys, auto member) {
  const int count = static_cast<int>(keys.size());
  qsizetype found = 0;
  const double ours = median(count, [&] {
    for (const Key& key : keys)
      found += table.commandsOf(key) ? 1 : 0;
  });
  const double walking = median(count, [&] {
    for (const Key& key : keys) {
      const auto& entries = table.entries();
      const auto entry = std::find_if(entries.begin(), entries.end(),
                                      [&](const auto& each) { return each.*member == key; });
      found -= entry != entries.end() ? 1 : 0;
    }
  });
  std::printf("%-36s %10.3f us %12.2f us\n", name, ours, walking);
  if (found != 0)
    std::printf("The two ways differ: the figures are worthless.\n");
}

void lookupRows() {
  constexpr int entries = 10000;
  AliasTable aliases;
  MacroTable macros;
  for (int number = 0; number < entries; ++number) {
    aliases.append({QStringLiteral("alias %1").arg(number), {"look"}});
    macros.append({number, {"look"}});
  }
  std::vector<QString> names;
  std::vector<QString> unknown;
  std::vector<qint32> keys;
  Words words(2);
  for (int number = 0; number < 500; ++number) {
    names.push_back(QStringLiteral("alias %1").arg(words.below(entries)));
    unknown.push_back(QStringLiteral("alias %1").arg(entries + words.below(entries)));
    keys.push_back(words.below(entries));
  }
  lookupRow("an alias among 10,000", aliases, names, &AliasEntry::name);
  lookupRow("no alias among 10,000", aliases, unknown, &AliasEntry::name);
  lookupRow("a macro among 10,000", macros, keys, &MacroEntry::key);
}

}  // namespace

int main() {
  std::setlocale(LC_ALL, "C");
  std::printf("%-36s %13s %15s %10s\n", "per line of 80 bytes, none matching", "here", "plain way",
              "to 100");
  triggerRow("no triggers", 0, 0, 0);
  const double hundred = triggerRow("100 plain", 100, 0, 0);
  triggerRow("100 plain + 100 templates", 100, 100, hundred);
  triggerRow("1,000 plain", 1000, 0, hundred);
  triggerRow("5,000 plain", 5000, 0, hundred);
  triggerRow("5,000 plain + 5,000 templates", 5000, 5000, hundred);
  compileRow();
  std::printf("\n%-36s %13s %15s\n", "per lookup", "here", "plain way");
  lookupRows();
  return 0;
}

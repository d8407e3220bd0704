#include <array>
#include <cstdio>

#include "FuzzTarget.h"
#include "terminal/core/Vitals.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

constexpr std::array formats{"hp: [ %d / %d ], sp: [ %d / %d ], ep: [ %d / %d ]",
                             "HP: [%d/%d], SP: [%d/%d], EP: [%d/%d]"};

using Numbers = std::array<int, 6>;

/// As the C library reads the line.
std::optional<Numbers> numbersOf(const char* line) {
  for (const char* format : formats) {
    Numbers n{};
    if (std::sscanf(line, format, &n[0], &n[1], &n[2], &n[3], &n[4], &n[5]) == 6)
      return n;
  }
  return std::nullopt;
}

std::optional<int> percentageOf(qint64 current, qint64 maximum) {
  if (current < 0)
    return 0;
  if (maximum == 0)
    return std::nullopt;
  // The conversions wrap as the processor's own multiplication would.
  const qint64 product = static_cast<qint32>(static_cast<quint32>(current * 100));
  return static_cast<qint32>(static_cast<quint32>(product / maximum));
}

}  // namespace

/// The input is a line of server text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray line = fuzz::bytesOf(data, size);
  const auto percentages = parseVitals(line.constData());
  const auto numbers = numbersOf(line.constData());
  fuzz::require(percentages.has_value() == numbers.has_value(),
                "a prompt is what the C library reads as one");
  if (!numbers)
    return 0;
  for (std::size_t bar = 0; bar < percentages->size(); ++bar)
    fuzz::require((*percentages)[bar] == percentageOf((*numbers)[2 * bar], (*numbers)[2 * bar + 1]),
                  "a percentage is that of its two numbers");
  return 0;
}

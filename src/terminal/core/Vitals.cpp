#include "terminal/core/Vitals.h"

#include <QtGlobal>

#include "scan/Format.h"

namespace kelmora::terminal {

namespace {

constexpr qsizetype numberCount = 6;

std::optional<scan::Result> readPrompt(const char* line) {
  static const std::array<std::optional<scan::Format>, 2> formats{
      scan::Format::compile("hp: [ %d / %d ], sp: [ %d / %d ], ep: [ %d / %d ]"),
      scan::Format::compile("HP: [%d/%d], SP: [%d/%d], EP: [%d/%d]"),
  };
  for (const auto& format : formats) {
    if (!format)
      continue;
    scan::Result result = format->scan(line);
    if (result.count() == numberCount)
      return result;
  }
  return std::nullopt;
}

std::optional<int> percentage(int current, int maximum) {
  if (current < 0)
    return 0;
  if (maximum == 0)
    return std::nullopt;
  // 32-bit arithmetic that wraps around: huge values give wrong percentages, which
  // the bar ignores if they are out of range.
  const auto product = static_cast<int>(static_cast<quint32>(current) * 100U);
  // Dividing the lowest number by -1 would overflow; it wraps to the same number.
  return maximum == -1 ? static_cast<int>(0U - static_cast<quint32>(product)) : product / maximum;
}

}  // namespace

std::optional<VitalPercentages> parseVitals(const char* line) {
  // Every line comes here and few are prompts, so the first letter is checked first.
  if (*line != 'h' && *line != 'H')
    return std::nullopt;
  const auto numbers = readPrompt(line);
  if (!numbers)
    return std::nullopt;
  VitalPercentages percentages;
  qsizetype field = 0;
  for (auto& bar : percentages) {
    bar = percentage(numbers->number(field), numbers->number(field + 1));
    field += 2;
  }
  return percentages;
}

}  // namespace kelmora::terminal

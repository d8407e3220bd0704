#pragma once

#include <array>
#include <optional>

namespace kelmora::terminal {

/// Percentages of hit, spell and endurance points, in this order. One that
/// cannot be computed (the maximum is 0) is absent: its bar keeps its value.
/// One outside 0 to 100 is possible; a bar ignores it.
using VitalPercentages = std::array<std::optional<int>, 3>;

/// Reads a status prompt that starts a zero-terminated 8-bit line; nothing for
/// any other line.
[[nodiscard]] std::optional<VitalPercentages> parseVitals(const char* line);

}  // namespace kelmora::terminal

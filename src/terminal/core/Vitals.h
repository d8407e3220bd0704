#pragma once

#include <array>
#include <optional>

namespace kelmora::terminal {

/// Percentages of hit, spell and endurance points, in this order. One is missing if
/// it cannot be computed because the maximum is 0; one may be outside 0 to 100. In
/// both cases its bar keeps its value.
using VitalPercentages = std::array<std::optional<int>, 3>;

/// Reads the prompt with which a zero-terminated line begins; nothing if it begins
/// with anything else.
[[nodiscard]] std::optional<VitalPercentages> parseVitals(const char* line);

}  // namespace kelmora::terminal

#pragma once

class QString;

namespace kelmora::script {

enum class Comparison { Equal, NotEqual, Less, Greater, LessOrEqual, GreaterOrEqual };

/// Equal and NotEqual compare the texts, code unit by code unit. The others
/// compare single-precision numbers: text that is no number counts as 0, a number
/// that is too large as infinity, and with "nan" the result is always false.
[[nodiscard]] bool compare(Comparison comparison, const QString& first, const QString& second);

}  // namespace kelmora::script

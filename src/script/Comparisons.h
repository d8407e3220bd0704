#pragma once

class QString;

namespace kelmora::script {

enum class Comparison { Equal, NotEqual, Less, Greater, LessOrEqual, GreaterOrEqual };

/// Equality is that of the texts, code unit by code unit. Order is that of
/// single-precision numbers, where text that is no number counts as 0, one too
/// large as infinity, and "nan" stands in no order to anything.
[[nodiscard]] bool compare(Comparison comparison, const QString& first, const QString& second);

}  // namespace kelmora::script

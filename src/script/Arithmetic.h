#pragma once

#include <QString>
#include <optional>

namespace kelmora::script {

enum class Operation { Add, Subtract, Multiply, Divide };

/// The new text of a variable, nothing when it stays as it is.
///
/// Two whole numbers of 32 bits are added and subtracted as such, wrapping
/// around; everything else is single precision. Sums are written in the
/// shortest form of six digits, products and quotients with six decimals, also
/// those of whole numbers. Dividing by zero divides by one. Text that is no
/// number is appended by Add and left alone by the others.
[[nodiscard]] std::optional<QString> calculate(Operation operation, const QString& value,
                                               const QString& operand);

/// How often a loop of that count runs: truncated toward zero, never negative;
/// no number, and one outside 32 bits, is none at all.
[[nodiscard]] int loopCount(const QString& count, int limit);

}  // namespace kelmora::script

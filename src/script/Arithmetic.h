#pragma once

#include <QString>
#include <optional>

namespace kelmora::script {

enum class Operation { Add, Subtract, Multiply, Divide };

/// The text that a variable gets when the operation is applied to its value and
/// the operand; nothing if the variable keeps its value.
///
/// Sums and differences of two 32-bit whole numbers are whole numbers and wrap
/// around. Everything else is calculated in single precision. Sums and
/// differences are then written with up to six significant digits, products and
/// quotients always with six decimals, even those of whole numbers. Division by
/// zero divides by one instead. If the value or the operand is no number, Add
/// joins the two texts and the other operations change nothing.
[[nodiscard]] std::optional<QString> calculate(Operation operation, const QString& value,
                                               const QString& operand);

/// How often a /repeat with that count runs its body: the count without its
/// decimals, at most `limit`. Never, if it is negative, no number, or does not
/// fit 32 bits.
[[nodiscard]] int loopCount(const QString& count, int limit);

}  // namespace kelmora::script

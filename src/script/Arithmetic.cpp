#include "script/Arithmetic.h"

namespace script {

namespace {

struct Number {
  explicit Number(const QString& text) : whole(text.toInt(&isWhole)), real(text.toFloat(&isReal)) {}

  // Before the numbers, whose parsing sets them.
  bool isWhole = false;
  bool isReal = false;
  int whole;
  float real;

  [[nodiscard]] bool isNumeric() const { return isWhole || isReal; }
};

QString wrapped(quint32 sum) {
  return QString::number(static_cast<qint32>(sum));
}

QString calculateWhole(Operation operation, const Number& a, const Number& b) {
  const auto left = static_cast<quint32>(a.whole);
  const auto right = static_cast<quint32>(b.whole);
  return wrapped(operation == Operation::Add ? left + right : left - right);
}

QString calculateReal(Operation operation, float a, float b) {
  // Each result is narrowed before it is widened for writing.
  switch (operation) {
    case Operation::Add:
      return QString::number(double{a + b}, 'g', 6);
    case Operation::Subtract:
      return QString::number(double{a - b}, 'g', 6);
    case Operation::Multiply:
      return QString::number(double{a * b}, 'f', 6);
    case Operation::Divide:
      break;
  }
  const float divisor = b == 0.0F ? 1.0F : b;
  return QString::number(double{a / divisor}, 'f', 6);
}

}  // namespace

std::optional<QString> calculate(Operation operation, const QString& value,
                                 const QString& operand) {
  const Number a(value);
  const Number b(operand);
  if (!a.isNumeric() || !b.isNumeric())
    return operation == Operation::Add ? std::optional(value + operand) : std::nullopt;
  const bool sum = operation == Operation::Add || operation == Operation::Subtract;
  // A quirk kept on purpose: products of whole numbers are written as reals.
  if (sum && a.isWhole && b.isWhole)
    return calculateWhole(operation, a, b);
  return calculateReal(operation, a.real, b.real);
}

int loopCount(const QString& count, int limit) {
  const float runs = count.toFloat();
  // One past the largest 32-bit number; also false for "nan".
  if (!(runs > 0.0F && runs < 2147483648.0F))
    return 0;
  return qMin(static_cast<int>(runs), limit);
}

}  // namespace script

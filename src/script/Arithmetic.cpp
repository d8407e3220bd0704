#include "script/Arithmetic.h"

namespace kelmora::script {

namespace {

std::optional<int> wholeOf(const QString& text) {
  bool isWhole = false;
  const int number = text.toInt(&isWhole);
  return isWhole ? std::optional(number) : std::nullopt;
}

std::optional<float> realOf(const QString& text) {
  bool isReal = false;
  const float number = text.toFloat(&isReal);
  return isReal ? std::optional(number) : std::nullopt;
}

QString wrapped(quint32 sum) {
  return QString::number(static_cast<qint32>(sum));
}

QString calculateReal(Operation operation, float a, float b) {
  // The calculation is done in float; only its result becomes a double, which
  // is what the toolkit writes.
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

QString calculateWhole(Operation operation, int a, int b) {
  const auto left = static_cast<quint32>(a);
  const auto right = static_cast<quint32>(b);
  if (operation == Operation::Add)
    return wrapped(left + right);
  if (operation == Operation::Subtract)
    return wrapped(left - right);
  // A quirk kept on purpose: products and quotients of whole numbers are written
  // with decimals.
  return calculateReal(operation, static_cast<float>(a), static_cast<float>(b));
}

}  // namespace

std::optional<QString> calculate(Operation operation, const QString& value,
                                 const QString& operand) {
  const std::optional<int> wholeA = wholeOf(value);
  const std::optional<int> wholeB = wholeOf(operand);
  if (wholeA && wholeB)
    return calculateWhole(operation, *wholeA, *wholeB);
  // A whole number counts as a real one, too.
  const std::optional<float> a = realOf(value);
  const std::optional<float> b = realOf(operand);
  if (a && b)
    return calculateReal(operation, *a, *b);
  return operation == Operation::Add ? std::optional(value + operand) : std::nullopt;
}

int loopCount(const QString& count, int limit) {
  const float runs = count.toFloat();
  // The limit is one more than the largest 32-bit number. "nan" fails the test,
  // too, because it compares as neither larger nor smaller.
  if (!(runs > 0.0F && runs < 2147483648.0F))
    return 0;
  return qMin(static_cast<int>(runs), limit);
}

}  // namespace kelmora::script

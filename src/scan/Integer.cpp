#include "scan/Integer.h"

#include <limits>

namespace kelmora::scan {

void DecimalSum::addDigit(char digit) {
  constexpr quint64 top = quint64{std::numeric_limits<qint64>::max()};
  const quint64 limit = sign_ == Sign::Minus ? top + 1 : top;
  const quint64 value = static_cast<quint64>(digit - '0');
  magnitude_ = magnitude_ > (limit - value) / 10 ? limit : magnitude_ * 10 + value;
}

int DecimalSum::toInt() const {
  // Negated and narrowed as unsigned numbers, where wrapping is defined.
  const quint64 value = sign_ == Sign::Minus ? quint64{0} - magnitude_ : magnitude_;
  return static_cast<int>(static_cast<quint32>(value));
}

int toInt(QByteArrayView text) {
  auto byte = text.begin();
  const auto end = text.end();
  while (byte != end && isSpace(*byte))
    ++byte;
  auto sign = DecimalSum::Sign::Plus;
  if (byte != end && (*byte == '+' || *byte == '-')) {
    if (*byte == '-')
      sign = DecimalSum::Sign::Minus;
    ++byte;
  }
  DecimalSum sum(sign);
  for (; byte != end && isDigit(*byte); ++byte)
    sum.addDigit(*byte);
  return sum.toInt();
}

}  // namespace kelmora::scan

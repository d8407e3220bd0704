#pragma once

#include <QByteArrayView>

namespace kelmora::scan {

/// The six blanks of the C locale; bytes above 127 never count.
[[nodiscard]] constexpr bool isSpace(char byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

[[nodiscard]] constexpr bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

/// Decimal digits, summed one at a time as a C library with 64-bit longs does
/// it: clamped at 64 bits, of which the low 32 are kept in the end. So a count
/// that is far too large is -1, and one far too small is 0.
class DecimalSum {
 public:
  enum class Sign { Plus, Minus };

  explicit constexpr DecimalSum(Sign sign) : sign_(sign) {}
  void addDigit(char digit);
  [[nodiscard]] int toInt() const;

 private:
  Sign sign_;
  quint64 magnitude_ = 0;
};

/// The number at the start of a text, as atoi reads it: blanks, a sign, digits;
/// 0 where there are none. The text ends at its first NUL byte.
[[nodiscard]] int toInt(QByteArrayView text);

}  // namespace kelmora::scan

#pragma once

#include <QByteArrayView>

namespace kelmora::scan {

/// White space in the C locale: blank, tab, line feed, vertical tab, form feed and
/// carriage return. No byte above 127 counts.
[[nodiscard]] constexpr bool isSpace(char byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

[[nodiscard]] constexpr bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

/// A whole number, made of decimal digits one by one, as a C library with 64-bit
/// longs makes it: the sum stops at the ends of the signed 64-bit range, and its low
/// 32 bits are the result. So a number that is far too large becomes -1, and one that
/// is far too small becomes 0.
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

/// The number at the start of a text, as atoi reads it: any white space, then perhaps
/// a sign, then the digits. 0 where there are no digits. The text ends at its first
/// NUL byte.
[[nodiscard]] int toInt(QByteArrayView text);

}  // namespace kelmora::scan

#pragma once

#include <QtGlobal>

namespace kelmora::terminal {

/// The number that QByteArray::toInt() would read from all the bytes appended so
/// far: blanks around it and a sign are allowed, a NUL ends it, and anything but a
/// signed 32-bit number counts as 0. Only the value is kept and not the bytes, so
/// even a sequence with a million parameters is cheap.
class CodeNumber {
 public:
  void append(char byte) {
    if (byte >= '0' && byte <= '9' && state_ <= State::Digits) {
      state_ = State::Digits;
      // A number that is too large stays too large, however many digits follow.
      if (magnitude_ <= lowestMagnitude)
        magnitude_ = magnitude_ * 10 + static_cast<quint64>(byte - '0');
    } else {
      appendOther(byte);
    }
  }
  [[nodiscard]] int value() const {
    const quint64 limit = negative_ ? lowestMagnitude : lowestMagnitude - 1;
    if (state_ == State::NoNumber || magnitude_ > limit)
      return 0;
    const auto value = static_cast<qint64>(magnitude_);
    return static_cast<int>(negative_ ? -value : value);
  }

 private:
  /// The magnitude of the lowest signed 32-bit number.
  static constexpr quint64 lowestMagnitude = quint64{1} << 31U;

  void appendOther(char byte);

  /// The order counts: digits may follow in the first three states.
  enum class State { Leading, Signed, Digits, Trailing, Ended, NoNumber };

  State state_ = State::Leading;
  bool negative_ = false;
  quint64 magnitude_ = 0;
};

}  // namespace kelmora::terminal

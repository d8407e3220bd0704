#include "terminal/core/CodeNumber.h"

#include "scan/Integer.h"

namespace {

/// The magnitude of the lowest signed 32-bit number.
constexpr quint64 lowestMagnitude = quint64{1} << 31U;

}  // namespace

void CodeNumber::append(char byte) {
  const bool hasDigits = state_ == State::Digits || state_ == State::Trailing;
  if (state_ == State::Ended || state_ == State::NoNumber)
    return;
  if (scan::isDigit(byte) && state_ != State::Trailing) {
    state_ = State::Digits;
    // Past the range it stays past the range, however many digits follow.
    if (magnitude_ <= lowestMagnitude)
      magnitude_ = magnitude_ * 10 + static_cast<quint64>(byte - '0');
  } else if (scan::isSpace(byte) && state_ != State::Signed) {
    if (hasDigits)
      state_ = State::Trailing;
  } else if ((byte == '-' || byte == '+') && state_ == State::Leading) {
    state_ = State::Signed;
    negative_ = byte == '-';
  } else {
    state_ = byte == '\0' && hasDigits ? State::Ended : State::NoNumber;
  }
}

int CodeNumber::value() const {
  const quint64 limit = negative_ ? lowestMagnitude : lowestMagnitude - 1;
  if (state_ == State::NoNumber || magnitude_ > limit)
    return 0;
  const qint64 value = static_cast<qint64>(magnitude_);
  return static_cast<int>(negative_ ? -value : value);
}

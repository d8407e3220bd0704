#include "terminal/core/CodeNumber.h"

#include "scan/Integer.h"

namespace kelmora::terminal {

void CodeNumber::appendOther(char byte) {
  const bool hasDigits = state_ == State::Digits || state_ == State::Trailing;
  if (state_ == State::Ended || state_ == State::NoNumber)
    return;
  if (scan::isSpace(byte) && state_ != State::Signed) {
    if (hasDigits)
      state_ = State::Trailing;
  } else if ((byte == '-' || byte == '+') && state_ == State::Leading) {
    state_ = State::Signed;
    negative_ = byte == '-';
  } else {
    state_ = byte == '\0' && hasDigits ? State::Ended : State::NoNumber;
  }
}

}  // namespace kelmora::terminal

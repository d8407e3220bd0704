#pragma once

#include <QtGlobal>

/// The value of a text that grows byte by byte, as QByteArray::toInt() would
/// read it after each: blanks around it and a sign are allowed, a NUL ends it,
/// and anything that is no signed 32-bit number is 0. Keeping the value and
/// not the text keeps a sequence of a million parameters cheap.
class CodeNumber {
 public:
  void append(char byte);
  [[nodiscard]] int value() const;

 private:
  enum class State { Leading, Signed, Digits, Trailing, Ended, NoNumber };

  State state_ = State::Leading;
  bool negative_ = false;
  quint64 magnitude_ = 0;
};

#pragma once

#include <QtGlobal>

namespace kelmora::automation {

/// How far the text of an automation file was read.
struct Reading {
  enum class End {
    Whole,      ///< to its end
    OpenBlock,  ///< to its end, but the last block has no end line and was dropped
    BadLine,    ///< up to a line that makes no sense
  };

  End end = End::Whole;
  /// The bad line, or the header line of the open block; the first line is 1.
  qsizetype line = 0;

  [[nodiscard]] bool isSuccess() const { return end != End::BadLine; }
};

}  // namespace kelmora::automation

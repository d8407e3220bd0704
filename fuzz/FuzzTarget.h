#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// The one function of a fuzz target. One process calls it with many inputs, and ends
/// at the first for which something is wrong.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// A copy of the input, which unlike the input itself has a NUL byte behind it.
inline QByteArray bytesOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)};
}

/// Ends the process where the claim is wrong.
inline void require(bool holds, const char* claim) {
  if (holds)
    return;
  std::fprintf(stderr, "Does not hold: %s\n", claim);
  std::abort();
}

}  // namespace fuzz

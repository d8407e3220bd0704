#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// The one function of a target, called with input after input in one process.
/// Whatever it finds wrong ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// The input, with a NUL behind it that it does not come with.
inline QByteArray bytesOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)};
}

/// Ends the process unless the claim holds.
inline void require(bool holds, const char* claim) {
  if (holds)
    return;
  std::fprintf(stderr, "Does not hold: %s\n", claim);
  std::abort();
}

}  // namespace fuzz

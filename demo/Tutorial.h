#pragma once

#include <span>

namespace kelmora::demo {

/// A walk through the client, in chapters. Texts are UTF-8 prose.
struct Chapter {
  const char* title;
  const char* text;
};

[[nodiscard]] std::span<const Chapter> tutorial();

}  // namespace kelmora::demo

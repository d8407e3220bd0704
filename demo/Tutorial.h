#pragma once

#include <span>

/// A walk through the client, in chapters. Texts are UTF-8 prose.
namespace demo {

struct Chapter {
  const char* title;
  const char* text;
};

[[nodiscard]] std::span<const Chapter> tutorial();

}  // namespace demo

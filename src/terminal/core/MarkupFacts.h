#pragma once

#include <QtGlobal>
#include <vector>

namespace kelmora::terminal {

/// What is known for certain of how HTML will be shown, without reading it.
struct MarkupFacts {
  /// Anything but tags. Blanks may collapse, and what an entity shows is the
  /// toolkit's to say.
  bool hasText = false;
  /// Nothing but inline tags and line breaks; others may go on working on what
  /// follows.
  bool isInlineOnly = true;
  /// How many characters it shows at least up to each line break, and behind the
  /// last.
  std::vector<qsizetype> lines = {};

  /// Whether it puts characters into the pane.
  [[nodiscard]] bool showsSomething() const { return lines.size() > 1 || lines.back() > 0; }
};

}  // namespace kelmora::terminal

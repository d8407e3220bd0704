#pragma once

#include <QtGlobal>
#include <vector>

namespace kelmora::terminal {

/// What is certain about how a piece of HTML will be shown before the toolkit has
/// imported it.
struct MarkupFacts {
  /// Whether it has anything besides tags. That may still show nothing: blanks may
  /// collapse, and what an entity shows is not known here.
  bool hasText = false;
  /// Whether it has only inline tags and line breaks. Other tags may affect the text
  /// that follows.
  bool isInlineOnly = true;
  /// The least number of characters that it shows up to each line break, and behind
  /// the last one.
  std::vector<qsizetype> lines = {};

  /// Whether it certainly puts characters into the pane; a line break is one.
  [[nodiscard]] bool showsSomething() const { return lines.size() > 1 || lines.back() > 0; }
};

}  // namespace kelmora::terminal

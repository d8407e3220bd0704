#pragma once

#include <QStringView>
#include <cstddef>

namespace kelmora::terminal {

namespace markup {

enum class Kind {
  Inline,
  /// Ends the one before it, so it does not nest.
  Paragraph,
  /// The same, and ends all that is open in its list.
  Term,
  /// Nests, and each level costs the importer more than the one before.
  Block,
  /// Has no end tag.
  Void,
  /// Inline, and nothing without its attribute: the pane would still show an
  /// anchor.
  Link,
};

/// A tag that passes, by its name in small letters.
struct TagRow {
  QStringView name;
  Kind kind;
};

inline constexpr std::size_t tagCount = 42;

/// In any case; null when no such tag passes.
[[nodiscard]] const TagRow* rowNamed(QStringView name);
/// Which of the rows it is, from 0.
[[nodiscard]] std::size_t indexOf(const TagRow* row);

}  // namespace markup

}  // namespace kelmora::terminal

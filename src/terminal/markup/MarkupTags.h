#pragma once

#include <QStringView>
#include <cstddef>

namespace kelmora::terminal {

namespace markup {

enum class Kind {
  Inline,
  /// A paragraph or a list item. It ends the one before it, so it does not nest.
  Paragraph,
  /// A paragraph of a definition list. It also ends all that is open in the list.
  Term,
  /// It nests, and each level takes the importer more time than the one before.
  Block,
  /// It has no end tag.
  Void,
  /// Inline. It is left out if it has no target, because the pane would still show it
  /// as an anchor.
  Link,
};

/// A tag that is allowed; its name is in small letters.
struct TagRow {
  QStringView name;
  Kind kind;
};

inline constexpr std::size_t tagCount = 42;

/// Null if no such tag is allowed. Upper and lower case are the same.
[[nodiscard]] const TagRow* rowNamed(QStringView name);
/// The row's index, 0 to tagCount - 1.
[[nodiscard]] std::size_t indexOf(const TagRow* row);

}  // namespace markup

}  // namespace kelmora::terminal

#pragma once

#include "terminal/core/MarkupReader.h"

namespace kelmora::terminal {

namespace markup {

/// What may stay of a tag's attributes, as it stands in the tag: each with a
/// blank before it and its value in double quotes. The tag's name is in small
/// letters.
[[nodiscard]] QString safeAttributes(QStringView tag,
                                     const std::vector<MarkupTag::Attribute>& attributes);

/// The attributes of a span inside a span as those of one, both as
/// safeAttributes() returns them: of two declarations of one name the inner
/// one counts.
[[nodiscard]] QString mergedStyle(const QString& outer, const QString& inner);

}  // namespace markup

}  // namespace kelmora::terminal

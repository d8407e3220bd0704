#pragma once

#include "terminal/markup/MarkupReader.h"

namespace kelmora::terminal {

namespace markup {

/// Writes those of a tag's attributes that are allowed, each with a blank before it
/// and its value in double quotes. The tag's name must be in small letters.
[[nodiscard]] QString safeAttributes(QStringView tag,
                                     const std::vector<MarkupTag::Attribute>& attributes);

/// The attributes of a single span that looks like a span inside another one. All are
/// as safeAttributes() returns them. If both declare the same, the inner one counts.
[[nodiscard]] QString mergedStyle(const QString& outer, const QString& inner);

}  // namespace markup

}  // namespace kelmora::terminal

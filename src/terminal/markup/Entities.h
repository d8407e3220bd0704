#pragma once

#include <QString>
#include <optional>

#include "terminal/markup/MarkupReader.h"

namespace kelmora::terminal {

/// These functions replace entities by what they show. They know those that the
/// client itself writes, for blanks and brackets, and an "&" that begins no entity.
/// For any other they return nothing: only the toolkit's importer knows what it
/// shows.

/// The text that a part of some HTML shows. The part has no tags, and points into
/// the HTML: what follows it may decide where its last entity ends.
[[nodiscard]] std::optional<QString> withoutEntities(const QString& html, QStringView part);

/// The target of a link, from its href attribute.
[[nodiscard]] std::optional<QString> targetOf(const MarkupTag::Attribute& attribute);

}  // namespace kelmora::terminal

#pragma once

#include <QString>
#include <optional>

#include "terminal/core/MarkupReader.h"

namespace kelmora::terminal {

/// Of the entities in the client's own HTML, those of blanks and brackets, and an
/// "&" that begins none. Nothing where there is any other: what it shows is the
/// importer's to say.

/// The text that a part of some HTML shows, a part without tags. What comes
/// behind it tells where an entity ends.
[[nodiscard]] std::optional<QString> withoutEntities(const QString& html, QStringView part);

/// What a link leads to, by its only attribute.
[[nodiscard]] std::optional<QString> targetOf(const MarkupTag::Attribute& attribute);

}  // namespace kelmora::terminal

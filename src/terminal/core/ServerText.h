#pragma once

#include <variant>
#include <vector>

#include "terminal/core/StyledText.h"
#include "terminal/markup/SafeMarkup.h"

namespace kelmora::terminal {

/// What a read becomes: text with its looks where possible; otherwise HTML in pieces,
/// namely where the server's tags are parsed and for all that only the toolkit's
/// importer can interpret.
using ServerText = std::variant<StyledText, std::vector<SafeHtml>>;

}  // namespace kelmora::terminal

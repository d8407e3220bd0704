#pragma once

#include <variant>
#include <vector>

#include "terminal/core/SafeMarkup.h"
#include "terminal/core/StyledText.h"

namespace kelmora::terminal {

/// What a read became: text and its runs, or, where the server's tags are parsed
/// and for what only the toolkit's importer can read, HTML in pieces.
using ServerText = std::variant<StyledText, std::vector<SafeHtml>>;

}  // namespace kelmora::terminal

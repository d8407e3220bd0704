#pragma once

namespace kelmora::tools {

class Studio;

// Each opens a tool of the pane's reader, keeps pictures of it and closes it. All need
// a game that has begun.

/// The bar to find words: empty, with hits, with none, and with an expression that is
/// none.
void keepFindBar(Studio& studio);
/// The view of earlier text, without and with the bar to find words.
void keepReadingBack(Studio& studio);
/// The context menu over a line of the game.
void keepMenu(Studio& studio);

}  // namespace kelmora::tools

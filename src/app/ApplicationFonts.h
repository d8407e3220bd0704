#pragma once

namespace kelmora::app {

/// Registers the embedded fonts and makes the application's default font.
/// Maps and tables of the game line up only in a fixed pitch, so where the
/// system has no Courier the embedded one stands in for it.
void installApplicationFonts();

}  // namespace kelmora::app

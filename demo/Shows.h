#pragma once

#include <QString>

namespace kelmora::demo {

/// What the world can show off: whole blocks of text, lines ended with "\r\n".
/// The title and the first question.
[[nodiscard]] QString welcome();
/// The sixteen colours, the backgrounds and the 256-colour palette.
[[nodiscard]] QString colours();
/// Addresses in plain text, as a client may turn them into links.
[[nodiscard]] QString links();
/// Greetings in many scripts, and line drawing.
[[nodiscard]] QString unicode();
/// Line `number` of `total` of a flood, in one of the sixteen colours only: a
/// flood is cut anywhere, and a 256-colour foreground must not be left open.
[[nodiscard]] QString floodLine(int number, int total);

}  // namespace kelmora::demo

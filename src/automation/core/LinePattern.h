#pragma once

#include <QLatin1StringView>

#include <QByteArray>
#include <QString>

namespace kelmora::automation {

/// What stands in a line for each tab that the game sent.
inline constexpr QLatin1StringView tabOfLine("&nbsp;&nbsp;&nbsp;&nbsp;");

/// A pattern of plain text for a line as the triggers get it: a trigger with it fires
/// when the same line comes again, also after the table was saved and loaded. It is
/// the part of the line that tells most and holds only what means itself in a pattern
/// and in the file: no quotation mark, no wildcard, no tab, nothing outside ASCII. No
/// part begins or ends within a word, and blanks around it are left out.
///
/// Empty where no part would tell the line from others.
[[nodiscard]] QString patternFor(const QByteArray& line);

}  // namespace kelmora::automation

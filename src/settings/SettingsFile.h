#pragma once

#include <QString>

namespace kelmora::settings {

struct ClientSettings;

/// The options as a text file to carry to another installation: 8-bit text, a
/// key, a blank and a value on each line. Values hold no blanks, so a font
/// family of two words comes back as its first.
/// Writes every option to the file. Its owner alone can read it, wherever the
/// system lets us say so: the proxy password stands in it as typed. False when
/// it cannot be written or is protected against it; an old file stands then.
/// A quirk: an empty hostName or interfaceStyle becomes a line without a value,
/// which the import refuses.
[[nodiscard]] bool exportSettings(const ClientSettings& record, const QString& fileName);

/// Takes over every line of the file, in any order. False when it cannot be
/// opened, at the first line that is no known key with a value, and after a
/// megabyte; the lines before stay taken over. A missing file is created empty.
[[nodiscard]] bool importSettings(ClientSettings& record, const QString& fileName);

}  // namespace kelmora::settings

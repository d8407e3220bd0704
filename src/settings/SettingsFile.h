#pragma once

#include <QString>

namespace kelmora::settings {

struct ClientSettings;

// The options as a text file that the player can carry to another installation:
// 8-bit text, on each line a key, a blank and a value. A value ends at its first
// blank, so a font family of two words comes back as the first of them.

/// Writes every option to the file. Its owner alone can read it, where the system
/// allows that: the proxy password stands in it as typed. False when the file
/// cannot be written or is protected against it; an old file then stays as it is.
/// A quirk: an empty hostName or interfaceStyle becomes a line without a value,
/// which the import refuses.
[[nodiscard]] bool exportSettings(const ClientSettings& record, const QString& fileName);

/// Takes over the lines of the file, in whatever order they stand. False when it
/// cannot be opened; when a line is no known key with a value; when it is longer
/// than a megabyte. The lines before that stay taken over. A missing file is
/// created empty, and an empty file changes nothing.
[[nodiscard]] bool importSettings(ClientSettings& record, const QString& fileName);

}  // namespace kelmora::settings

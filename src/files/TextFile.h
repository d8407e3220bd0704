#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>

namespace kelmora::files {

/// The most of a file that is read, in bytes. No table comes near it; a file
/// beyond it is something else, and would take the memory many times over.
inline constexpr qint64 largestFile = qint64{128} * 1024 * 1024;

/// What a file held.
struct Contents {
  /// Ends with a whole line where the file could not be read to its end.
  QByteArray bytes;
  /// Whether that is the whole file.
  bool whole;
};

/// Reads a file; one that is missing is created empty, and a link to the null
/// device is empty for good. Nothing where it can be neither read nor created,
/// or is no ordinary file: a pipe could hold the program forever.
[[nodiscard]] std::optional<Contents> read(const QString& path);

/// Who may read a file that was replaced.
enum class Access {
  AsBefore,   ///< the permissions of the old file stay
  OwnerOnly,  ///< the owner alone, from the first byte on, as far as the system lets us
};

/// Gives the file these bytes. It holds the old ones or the new ones, never a
/// part: a crash, a full disk or a failing write leaves the old file. A link
/// stays a link. Only where a file cannot be put in the old one's place is it
/// written in place. False when not all of the bytes are there; the old file
/// stands then, but where it was written in place.
[[nodiscard]] bool replace(const QString& path, QByteArrayView bytes,
                           Access access = Access::AsBefore);

/// Puts a copy of the file beside it, as NAME.bak, or NAME.bak2 and so on where
/// there already is one; nothing is ever written over. A file that cannot be
/// read to its end cannot be copied and is moved there instead. True also where
/// there is no file to keep; false when it is not kept, or is none to be kept: a
/// folder, a pipe or a device.
[[nodiscard]] bool keepBeside(const QString& path, Access access = Access::AsBefore);

/// Moves the file itself to such a name. A link is moved, not what it leads to.
[[nodiscard]] bool moveBeside(const QString& path);

/// Whether the file could be opened for writing, which leaves it empty.
[[nodiscard]] bool openAndEmpty(const QString& path);

}  // namespace kelmora::files

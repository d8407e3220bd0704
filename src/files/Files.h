#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>

namespace kelmora::files {

/// What a path leads to. A link counts as its target, and one whose target does
/// not exist counts as missing.
enum class Kind {
  Missing,
  Ordinary,  ///< a file that holds bytes
  Other,     ///< a folder, a pipe or a device
};

/// To be asked before a file is opened: opening a pipe waits until somebody opens
/// its other end, and reading a device may never come to an end.
[[nodiscard]] Kind kindOf(const QString& path);

/// The most bytes that are read of a file. No table of this client comes near it;
/// a longer file is something else, and its entries would take many times its
/// size in memory.
inline constexpr qint64 largestFile = qint64{128} * 1024 * 1024;

/// What was read of a file.
struct Contents {
  QByteArray bytes;
  /// False where the file goes on behind these bytes: it is longer than allowed,
  /// or reading it failed there.
  bool whole;

  /// The bytes without the last line where that may have been cut short.
  [[nodiscard]] QByteArrayView wholeLines() const;
};

/// Reads at most that many bytes of an ordinary file. Nothing where there is none,
/// or it cannot be opened.
[[nodiscard]] std::optional<Contents> read(const QString& path, qint64 mostBytes = largestFile);

/// Reads a file in the same way, but creates an empty one where it is missing. A
/// link to the null device counts as an empty file: that is how a player says
/// that nothing is to be kept. Nothing where it can be neither read nor created,
/// or is another kind of thing.
[[nodiscard]] std::optional<Contents> readOrCreate(const QString& path,
                                                   qint64 mostBytes = largestFile);

/// Who may read a file that was replaced or copied.
enum class Access {
  AsBefore,   ///< whoever could read the old file
  OwnerOnly,  ///< its owner alone, from the first byte on, where the system allows it
};

/// Gives the file these bytes. Whatever happens, it then holds either all the old
/// bytes or all the new ones: a crash, a full disk or a failing write leaves the
/// old file. A link stays a link, and its target is replaced. The new bytes are
/// written over the old ones only where no other file can take the old one's
/// place.
///
/// False when not all the bytes were written. The old file is then unchanged,
/// unless it was being written over.
[[nodiscard]] bool replace(const QString& path, QByteArrayView bytes,
                           Access access = Access::AsBefore);

/// Copies the file to NAME.bak beside it or, where that name is taken, to
/// NAME.bak2 and so on; no other file is ever written over. A file that is too
/// long to be copied, or cannot be read to its end, is moved to that name instead.
///
/// True also where there is no file to keep. False when it could not be kept, and
/// for a folder, a pipe or a device.
[[nodiscard]] bool keepBeside(const QString& path, Access access = Access::AsBefore);

/// Moves the file itself to such a name. Of a link the link is moved, not its
/// target.
[[nodiscard]] bool moveBeside(const QString& path);

/// Opens the file for writing, which leaves it empty, and closes it again. True
/// when it could be opened.
[[nodiscard]] bool openAndEmpty(const QString& path);

}  // namespace kelmora::files

#include "files/TextFile.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <algorithm>

namespace kelmora::files {

namespace {

/// Opening a pipe waits for its other end, reading a device may never stop,
/// and replacing a device that a link leads to would take it from the system.
bool isOrdinaryOrMissing(const QString& path) {
  const QFileInfo info(path);
  return !info.exists() || info.isFile();
}

/// What the system throws everything away in; a file led there holds nothing.
bool isNullDevice(const QString& path) {
  const QString target = QFileInfo(path).canonicalFilePath();
  return !target.isEmpty() && target == QFileInfo(QProcess::nullDevice()).canonicalFilePath();
}

bool writeAll(QFileDevice& file, QByteArrayView bytes) {
  return file.write(bytes.data(), bytes.size()) == bytes.size();
}

bool writeInPlace(const QString& path, QByteArrayView bytes) {
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && writeAll(file, bytes) && file.flush();
}

QString nameBeside(const QString& path, int number) {
  const QString name = path + QStringLiteral(".bak");
  return number == 1 ? name : name + QString::number(number);
}

bool isTaken(const QString& path) {
  const QFileInfo info(path);
  return info.exists() || info.isSymLink();
}

/// Nothing where the file is too long to be copied, or cannot be read to its end.
std::optional<QByteArray> wholeFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly) || file.size() > largestFile)
    return std::nullopt;
  QByteArray bytes = file.readAll();
  return file.error() == QFileDevice::NoError ? std::optional(std::move(bytes)) : std::nullopt;
}

/// Makes an empty file of its owner's alone under the first free name; nobody
/// else can have made it. Empty where none can be made.
QString newFileBeside(const QString& path) {
  constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
  for (int number = 1;; ++number) {
    QFile file(nameBeside(path, number));
    if (!isTaken(file.fileName()) &&
        file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly))
      return file.fileName();
    if (!isTaken(file.fileName()))
      return {};
  }
}

}  // namespace

std::optional<Contents> read(const QString& path) {
  if (isNullDevice(path))
    return Contents{.bytes = {}, .whole = true};
  if (!isOrdinaryOrMissing(path))
    return std::nullopt;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly) && !file.open(QIODevice::ReadWrite))
    return std::nullopt;
  // One byte more than may be there tells a file that is too long.
  QByteArray bytes = file.read(std::min(file.size(), largestFile) + 1);
  const bool whole = file.error() == QFileDevice::NoError && bytes.size() <= largestFile;
  if (!whole)
    bytes.truncate(bytes.lastIndexOf('\n') + 1);
  return Contents{std::move(bytes), whole};
}

bool replace(const QString& path, QByteArrayView bytes, Access access) {
  if (!isOrdinaryOrMissing(path))
    return false;
  QSaveFile file(path);
  file.setDirectWriteFallback(true);
  const bool isOpen = file.open(QIODevice::WriteOnly);
  // Some disks have no permissions, and another user's file keeps its own.
  if (isOpen && access == Access::OwnerOnly)
    (void)file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
  // The toolkit does not look whether its buffer reached the disk before it puts
  // the file in the old one's place.
  if (isOpen && writeAll(file, bytes) && file.flush() && file.commit())
    return true;
  // The disk has taken all the bytes and only the exchange was refused, as for
  // a file mounted by itself or another user's in a shared folder.
  return file.error() == QFileDevice::RenameError && writeInPlace(path, bytes);
}

bool keepBeside(const QString& path, Access access) {
  if (!isTaken(path))
    return true;
  if (!QFileInfo(path).isFile())
    return false;
  const std::optional<QByteArray> bytes = wholeFile(path);
  if (!bytes)
    return moveBeside(path);
  const QString copy = newFileBeside(path);
  if (copy.isEmpty())
    return false;
  if (!replace(copy, *bytes, Access::OwnerOnly)) {
    QFile::remove(copy);
    return false;
  }
  if (access == Access::AsBefore)
    (void)QFile::setPermissions(copy, QFile::permissions(path));
  return true;
}

bool moveBeside(const QString& path) {
  for (int number = 1;; ++number) {
    const QString name = nameBeside(path, number);
    if (!isTaken(name) && QFile::rename(path, name))
      return true;
    if (!isTaken(name))
      return false;
  }
}

bool openAndEmpty(const QString& path) {
  return isOrdinaryOrMissing(path) && QFile(path).open(QIODevice::WriteOnly);
}

}  // namespace kelmora::files

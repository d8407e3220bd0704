#include "files/Files.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <algorithm>

#include "files/Log.h"

namespace kelmora::files {

namespace {

constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

void logFailure(const char* failure, const QString& path, const QString& reason) {
  qCWarning(filesLog).noquote().nospace() << failure << ' ' << path << ": " << reason;
}

void logKept(const char* how, const QString& path, const QString& name) {
  qCInfo(filesLog).noquote().nospace() << path << " was " << how << ' ' << name;
}

/// Replacing a device that a link leads to would take it away from the whole
/// system, so that other kinds are left alone by writing, too.
bool isOrdinaryOrMissing(const QString& path) {
  if (kindOf(path) != Kind::Other)
    return true;
  logFailure("left alone:", path, QStringLiteral("it is no ordinary file"));
  return false;
}

/// The device that throws away whatever is written to it.
bool isNullDevice(const QString& path) {
  const QString target = QFileInfo(path).canonicalFilePath();
  return !target.isEmpty() && target == QFileInfo(QProcess::nullDevice()).canonicalFilePath();
}

Contents readOpened(QFile& file, qint64 mostBytes) {
  // One byte more than is allowed shows that the file is too long. No more than
  // the file's size is asked for, since the toolkit first reserves all of it.
  QByteArray bytes = file.read(std::min(file.size(), mostBytes) + 1);
  const bool hasFailed = file.error() != QFileDevice::NoError;
  const bool isTooLong = bytes.size() > mostBytes;
  if (hasFailed)
    logFailure("cannot read to its end:", file.fileName(), file.errorString());
  if (isTooLong)
    logFailure("not read to its end:", file.fileName(),
               QStringLiteral("it is longer than %1 bytes").arg(mostBytes));
  bytes.truncate(mostBytes);
  return {std::move(bytes), !hasFailed && !isTooLong};
}

bool writeAll(QFileDevice& file, QByteArrayView bytes) {
  return file.write(bytes.data(), bytes.size()) == bytes.size();
}

bool writeInPlace(const QString& path, QByteArrayView bytes) {
  QFile file(path);
  if (file.open(QIODevice::WriteOnly) && writeAll(file, bytes) && file.flush()) {
    qCInfo(filesLog).noquote() << path << "was written over, as no file can take its place";
    return true;
  }
  logFailure("cannot write over", path, file.errorString());
  return false;
}

QString nameBeside(const QString& path, int number) {
  const QString name = path + QStringLiteral(".bak");
  return number == 1 ? name : name + QString::number(number);
}

bool isTaken(const QString& path) {
  const QFileInfo info(path);
  return info.exists() || info.isSymLink();
}

/// Creates an empty file under the first free name, for its owner alone. The
/// system makes sure that nobody else creates it in the same moment. An empty
/// name where none can be created.
QString newFileBeside(const QString& path) {
  for (int number = 1;; ++number) {
    QFile file(nameBeside(path, number));
    if (!isTaken(file.fileName()) &&
        file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly))
      return file.fileName();
    if (!isTaken(file.fileName())) {
      logFailure("cannot create", file.fileName(), file.errorString());
      return {};
    }
  }
}

}  // namespace

Kind kindOf(const QString& path) {
  const QFileInfo info(path);
  if (!info.exists())
    return Kind::Missing;
  return info.isFile() ? Kind::Ordinary : Kind::Other;
}

QByteArrayView Contents::wholeLines() const {
  return whole ? bytes : QByteArrayView(bytes).first(bytes.lastIndexOf('\n') + 1);
}

std::optional<Contents> read(const QString& path, qint64 mostBytes) {
  if (!isOrdinaryOrMissing(path))
    return std::nullopt;
  QFile file(path);
  if (file.open(QIODevice::ReadOnly))
    return readOpened(file, mostBytes);
  logFailure("cannot read", path, file.errorString());
  return std::nullopt;
}

std::optional<Contents> readOrCreate(const QString& path, qint64 mostBytes) {
  if (isNullDevice(path))
    return Contents{.bytes = {}, .whole = true};
  if (!isOrdinaryOrMissing(path))
    return std::nullopt;
  QFile file(path);
  if (file.open(QIODevice::ReadOnly) || file.open(QIODevice::ReadWrite))
    return readOpened(file, mostBytes);
  logFailure("cannot read or create", path, file.errorString());
  return std::nullopt;
}

bool replace(const QString& path, QByteArrayView bytes, Access access) {
  if (!isOrdinaryOrMissing(path))
    return false;
  QSaveFile file(path);
  file.setDirectWriteFallback(true);
  const bool isOpen = file.open(QIODevice::WriteOnly);
  // This may fail: some disks have no permissions, and another user's file keeps
  // those that it has.
  if (isOpen && access == Access::OwnerOnly)
    (void)file.setPermissions(ownerOnly);
  // The file is flushed first since the toolkit does not look whether the last
  // bytes reached the disk before it lets the new file take the old one's place.
  if (isOpen && writeAll(file, bytes) && file.flush() && file.commit())
    return true;
  // All bytes are on the disk, but the new file may not take the old one's place.
  // So it is with a file that is mounted by itself, and with another user's file
  // in a shared folder.
  if (file.error() == QFileDevice::RenameError)
    return writeInPlace(path, bytes);
  logFailure("cannot replace", path, file.errorString());
  return false;
}

bool keepBeside(const QString& path, Access access) {
  if (!isTaken(path))
    return true;
  if (kindOf(path) != Kind::Ordinary) {
    logFailure("cannot keep", path, QStringLiteral("it is no ordinary file"));
    return false;
  }
  const std::optional<Contents> contents = read(path);
  if (!contents || !contents->whole)
    return moveBeside(path);
  const QString copy = newFileBeside(path);
  if (copy.isEmpty())
    return false;
  if (!replace(copy, contents->bytes, Access::OwnerOnly)) {
    QFile::remove(copy);
    return false;
  }
  if (access == Access::AsBefore)
    (void)QFile::setPermissions(copy, QFile::permissions(path));
  logKept("copied to", path, copy);
  return true;
}

bool moveBeside(const QString& path) {
  for (int number = 1;; ++number) {
    QFile file(path);
    const QString name = nameBeside(path, number);
    if (!isTaken(name) && file.rename(name)) {
      logKept("moved to", path, name);
      return true;
    }
    if (!isTaken(name)) {
      logFailure("cannot move aside", path, file.errorString());
      return false;
    }
  }
}

bool openAndEmpty(const QString& path) {
  if (!isOrdinaryOrMissing(path))
    return false;
  QFile file(path);
  if (file.open(QIODevice::WriteOnly))
    return true;
  logFailure("cannot write to", path, file.errorString());
  return false;
}

}  // namespace kelmora::files

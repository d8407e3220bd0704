#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryFile>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

#include "settings/SettingsFields.h"

namespace {

constexpr auto sizeKey = "size";
constexpr auto posKey = "pos";
constexpr QLatin1String organisation("Dunmere Works");
constexpr QLatin1String application("Kelmora Client v3.9b");

using settings::StorePlace;

QSettings opened(const StorePlace& place) {
  return place.iniFile.isEmpty() ? QSettings(organisation, application)
                                 : QSettings(place.iniFile, QSettings::IniFormat);
}

/// The store, inside the one group that holds everything.
class Store {
 public:
  explicit Store(const StorePlace& place) : settings_(opened(place)) {
    // Where no file can be put beside the old one, writing it in place is
    // better than losing the options.
    settings_.setAtomicSyncRequired(false);
    settings_.beginGroup(QStringLiteral("Global Settings"));
  }

  [[nodiscard]] QVariant value(const char* key, const QVariant& fallback) const {
    return settings_.value(QLatin1String(key), fallback);
  }
  void setValue(const char* key, const QVariant& value) {
    settings_.setValue(QLatin1String(key), value);
  }

 private:
  QSettings settings_;
};

/// The file that the toolkit takes apart when it opens the store; empty where
/// the store is none.
QString fileOf(const StorePlace& place) {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
  if (place.iniFile.isEmpty())
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' +
           organisation + u'/' + application + QLatin1String(".conf");
#endif
  return place.iniFile;
}

// The toolkit reads a store as soon as it is named. It would wait at a pipe for
// good, and it takes nested values apart by recursion, so that some hundred
// kilobytes of them end the stack. No such value is ours; each level of one
// takes three zeros or more.
bool canBeOpened(const StorePlace& place) {
  constexpr qint64 longestStore = qint64{1024} * 1024;  // bytes; ours has some two thousand
  constexpr qsizetype mostZeros = 10'000;
  const QFileInfo info(fileOf(place));
  if (info.filePath().isEmpty() || !info.exists())
    return true;
  QFile file(info.filePath());
  if (!info.isFile() || info.size() > longestStore)
    return false;
  const QByteArray content =
      file.open(QIODevice::ReadOnly) ? file.read(longestStore) : QByteArray();
  return content.count('\0') + content.count("\\0") + content.count("\\x0") <= mostZeros;
}

/// False where something other than a file is in the store's place.
bool makeWay(const StorePlace& place) {
  return canBeOpened(place) || (QFileInfo(fileOf(place)).isFile() && QFile::remove(fileOf(place)));
}

#ifdef Q_OS_UNIX

// A client that is killed while it saves leaves the toolkit's lock behind, and
// the next save would wait for it for half a minute. Whether anybody still
// holds it is for the system to say. In the instant before the holder has told
// the system, two clients may both go on; the later one's file stands then.
void removeAbandonedLock(const QString& storePath) {
  const QByteArray path = QFile::encodeName(storePath + QStringLiteral(".lock"));
  const int lock = ::open(path.constData(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
  if (lock < 0)
    return;
  if (::flock(lock, LOCK_EX | LOCK_NB) == 0)
    ::unlink(path.constData());
  ::close(lock);
}

void makeOwnFolder(const QString& path) {
  if (QFileInfo::exists(path))
    return;
  const QString parent = QFileInfo(path).path();
  if (parent != path)
    makeOwnFolder(parent);
  QDir().mkdir(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

// The toolkit gives a rewritten file the permissions of the old one, from its
// first byte on; so it is enough that an old one is there and is private. A
// password must never stand in a file that others can open.
void makePrivate(const QString& path) {
  constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
  makeOwnFolder(QFileInfo(path).path());
  if (QFileInfo(path).isFile()) {
    if (QFile::setPermissions(path, ownerOnly))
      return;
    QFile::remove(path);  // not ours: it gives way to one that is
  }
  QFile created(path);
  (void)created.open(QIODevice::ReadWrite, ownerOnly);  // a folder in its place stays as it is
}

// The toolkit does not look whether the file it has written reached the disk
// before it puts it in the old one's place; so the disk is asked first. Where no
// file can be made, none will take the old one's place.
bool diskHasRoom(const QString& storePath) {
  constexpr qint64 someOptions = qint64{64} * 1024;
  const qint64 room = 2 * QFileInfo(storePath).size() + someOptions;
  QTemporaryFile trial(storePath + QStringLiteral(".XXXXXX"));
  return !trial.open() || (trial.write(QByteArray(room, '\0')) == room && trial.flush());
}

#endif

}  // namespace

namespace settings {

WindowPlace load(ClientSettings& record, const StorePlace& at) {
  const WindowPlace fallback;
  if (!canBeOpened(at)) {
    record = ClientSettings();
    return fallback;
  }
  const Store store(at);
  const WindowPlace place{store.value(sizeKey, fallback.size).toSize(),
                          store.value(posKey, fallback.pos).toPoint()};
  for (const SettingsField& field : fields())
    assign(record, field, store.value(field.storeKey, field.defaultValue));
  return place;
}

void save(const ClientSettings& record, const WindowPlace& place, const StorePlace& at) {
  if (!makeWay(at))
    return;
  Store store(at);
#ifdef Q_OS_UNIX
  // Elsewhere, and on macOS, the system keeps its own store for its user alone.
  if (const QString file = fileOf(at); !file.isEmpty()) {
    makePrivate(file);
    removeAbandonedLock(file);
    if (!diskHasRoom(file))
      return;
  }
#endif
  store.setValue(sizeKey, place.size);
  store.setValue(posKey, place.pos);
  for (const SettingsField& field : fields())
    store.setValue(field.storeKey, storedValue(record, field));
}

}  // namespace settings

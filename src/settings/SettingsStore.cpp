#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <numeric>
#include <utility>
#include <vector>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

#include "files/TextFile.h"
#include "settings/SettingsFields.h"

namespace kelmora::settings {

namespace {

constexpr QLatin1String sizeKey("size");
constexpr QLatin1String posKey("pos");
constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QLatin1String organisation("Dunmere Works");
constexpr QLatin1String application("Kelmora Client v3.9b");

using settings::StorePlace;

QSettings opened(const StorePlace& place) {
  return place.iniFile.isEmpty() ? QSettings(organisation, application)
                                 : QSettings(place.iniFile, QSettings::IniFormat);
}

/// The options in the form in which the store holds them, the window's place
/// among them.
using Values = std::vector<std::pair<QLatin1String, QVariant>>;

Values valuesOf(const ClientSettings& record, const WindowPlace& place) {
  Values values{{sizeKey, place.size}, {posKey, place.pos}};
  for (const SettingsField& field : fields())
    values.emplace_back(QLatin1String(field.storeKey), storedValue(record, field));
  return values;
}

/// The store, inside the one group that holds everything.
class Store {
 public:
  explicit Store(const StorePlace& place) : settings_(opened(place)) {
    // Where no file can be put beside the old one, writing it in place is
    // better than losing the options.
    settings_.setAtomicSyncRequired(false);
    // The toolkit looks at a part of the store when something in it is asked for.
    (void)settings_.allKeys();
    hasUnread_ = settings_.status() != QSettings::NoError;
    settings_.beginGroup(QStringLiteral("Global Settings"));
  }

  [[nodiscard]] QVariant value(QLatin1String key, const QVariant& fallback) const {
    return settings_.value(key, fallback);
  }
  void set(const Values& values) {
    for (const auto& [key, value] : values)
      settings_.setValue(key, value);
  }
  /// Whether the toolkit has passed over something that it could not read.
  [[nodiscard]] bool hasUnread() const { return hasUnread_; }

 private:
  QSettings settings_;
  bool hasUnread_ = false;
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

constexpr qint64 longestStore = qint64{1024} * 1024;  // bytes; ours has some two thousand
constexpr qsizetype mostZeros = 10'000;

enum class Condition {
  Readable,  ///< or missing
  Refused,   ///< a file, but not one that may be opened
  NoFile,    ///< a folder, a pipe, a device
};

// The toolkit reads a store as soon as it is named. It would wait at a pipe for
// good, and it takes nested values apart by recursion, so that some hundred
// kilobytes of them end the stack. No such value is ours; each level of one
// takes three zeros or more.
Condition conditionOf(const QString& storePath) {
  const QFileInfo info(storePath);
  if (!info.exists())
    return Condition::Readable;
  if (!info.isFile())
    return Condition::NoFile;
  QFile file(storePath);
  if (info.size() > longestStore || !file.open(QIODevice::ReadOnly))
    return Condition::Refused;
  const QByteArray content = file.read(longestStore);
  const qsizetype zeros = content.count('\0') + content.count("\\0") + content.count("\\x0");
  return zeros <= mostZeros ? Condition::Readable : Condition::Refused;
}

/// Whether nothing unread stands where the store is to be written.
bool makeWay(const QString& storePath) {
  switch (conditionOf(storePath)) {
    case Condition::Readable:
      return true;
    case Condition::Refused:
      (void)QFile::setPermissions(storePath, ownerOnly);
      return files::moveBeside(storePath);
    case Condition::NoFile:
      break;
  }
  return false;
}

qsizetype lengthOf(const Values& values) {
  return std::accumulate(
      values.begin(), values.end(), qsizetype{0},
      [](qsizetype sum, const auto& entry) { return sum + entry.second.toString().size(); });
}

/// Whether the next load will open the store once these values are in it; one
/// that is no file is always opened.
bool canComeBack(const QString& storePath, const Values& values) {
  // Each zero takes a character or more, so that no usual store needs a trial.
  if (storePath.isEmpty() || QFileInfo(storePath).size() + lengthOf(values) <= mostZeros)
    return true;
  QTemporaryFile trial(storePath + QStringLiteral(".XXXXXX"));
  QFile old(storePath);
  if (!trial.open() || (old.open(QIODevice::ReadOnly) && trial.write(old.readAll()) < 0))
    return false;
  trial.close();
  Store(StorePlace{trial.fileName()}).set(values);
  return conditionOf(trial.fileName()) == Condition::Readable;
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
bool diskHasRoom(const QString& storePath, const Values& values) {
  constexpr qint64 someOptions = qint64{64} * 1024;
  constexpr qint64 longestCharacter = 6;  // bytes, as an escape
  const qint64 room =
      2 * QFileInfo(storePath).size() + longestCharacter * lengthOf(values) + someOptions;
  QTemporaryFile trial(storePath + QStringLiteral(".XXXXXX"));
  return !trial.open() || (trial.write(QByteArray(room, '\0')) == room && trial.flush());
}

#endif

}  // namespace

SettingsStore::SettingsStore(StorePlace place) : place_(std::move(place)) {}

WindowPlace SettingsStore::load(ClientSettings& record) {
  const WindowPlace fallback;
  if (conditionOf(fileOf(place_)) != Condition::Readable) {
    record = ClientSettings();
    return fallback;
  }
  const Store store(place_);
  unread_ = store.hasUnread();
  const WindowPlace place{store.value(sizeKey, fallback.size).toSize(),
                          store.value(posKey, fallback.pos).toPoint()};
  for (const SettingsField& field : fields())
    assign(record, field, store.value(QLatin1String(field.storeKey), field.defaultValue));
  return place;
}

void SettingsStore::save(const ClientSettings& record, const WindowPlace& place) {
  const QString file = fileOf(place_);
  if (!makeWay(file))
    return;
  Store store(place_);
  if ((unread_ || store.hasUnread()) && !files::keepBeside(file, files::Access::OwnerOnly))
    return;
  unread_ = false;
  const Values values = valuesOf(record, place);
#ifdef Q_OS_UNIX
  // Elsewhere, and on macOS, the system keeps its own store for its user alone.
  if (!file.isEmpty()) {
    makePrivate(file);
    removeAbandonedLock(file);
    if (!diskHasRoom(file, values))
      return;
  }
#endif
  if (canComeBack(file, values))
    store.set(values);
}

}  // namespace kelmora::settings

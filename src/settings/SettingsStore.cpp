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

#include "files/Files.h"
#include "files/Log.h"
#include "settings/SettingsFields.h"

namespace kelmora::settings {

namespace {

constexpr QLatin1String sizeKey("size");
constexpr QLatin1String posKey("pos");
constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QLatin1String organisation("Dunmere Works");
constexpr QLatin1String application("Kelmora Client v3.9b");

QSettings opened(const StorePlace& place) {
  return place.iniFile.isEmpty() ? QSettings(organisation, application)
                                 : QSettings(place.iniFile, QSettings::IniFormat);
}

/// All that a save writes: the options and the window's place, in the form in
/// which the store holds them.
using Values = std::vector<std::pair<QLatin1String, QVariant>>;

Values valuesOf(const ClientSettings& record, const WindowPlace& place) {
  Values values{{sizeKey, place.size}, {posKey, place.pos}};
  for (const SettingsField& field : fields())
    values.emplace_back(QLatin1String(field.storeKey), storedValue(record, field));
  return values;
}

/// The toolkit's store, at the one group that holds all our keys.
class Store {
 public:
  explicit Store(const StorePlace& place) : settings_(opened(place)) {
    // By default the toolkit writes a new file and gives it the old one's name.
    // Where the folder takes no new file, it may write into the old one: that is
    // better than losing the options.
    settings_.setAtomicSyncRequired(false);
    // The toolkit reads a part of the store only when something in it is asked
    // for. Errors are known only after all of it has been.
    (void)settings_.allKeys();
    hasUnread_ = settings_.status() != QSettings::NoError;
    settings_.beginGroup(QStringLiteral("Global Settings"));
  }

  [[nodiscard]] QVariant value(QLatin1String key, const QVariant& fallback) const {
    return settings_.value(key, fallback);
  }
  /// False when the toolkit says that it could not write them.
  bool set(const Values& values) {
    for (const auto& [key, value] : values)
      settings_.setValue(key, value);
    settings_.sync();
    return settings_.status() != QSettings::AccessError;
  }
  /// Whether the toolkit has passed over something that it could not read.
  [[nodiscard]] bool hasUnread() const { return hasUnread_; }

 private:
  QSettings settings_;
  bool hasUnread_ = false;
};

/// The file that the toolkit reads when it opens the store; empty where the
/// store is not a file.
QString fileOf(const StorePlace& place) {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
  if (place.iniFile.isEmpty())
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' +
           organisation + u'/' + application + QLatin1String(".conf");
#endif
  return place.iniFile;
}

constexpr qint64 longestStore = qint64{1024} * 1024;  // bytes; ours has some two thousand
constexpr qsizetype mostZeros = 10'000;               // zero bytes, also those written as escapes

enum class Condition {
  Readable,  ///< or missing
  Refused,   ///< a file that is too long, has too many zeros, or cannot be opened
  NoFile,    ///< a folder, a pipe, a device
};

// Some files must not be given to the toolkit at all. At a pipe it would wait for
// ever. A value within a value it reads by recursion, so that some hundred
// kilobytes of such nesting overflow the stack. We never store such values; each
// level of nesting has at least three zero bytes, so counting zeros finds them.
Condition conditionOf(const QString& storePath) {
  switch (files::kindOf(storePath)) {
    case files::Kind::Missing:
      return Condition::Readable;
    case files::Kind::Other:
      return Condition::NoFile;
    case files::Kind::Ordinary:
      break;
  }
  const auto file = files::read(storePath, longestStore);
  if (!file || !file->whole)
    return Condition::Refused;
  const QByteArray& content = file->bytes;
  const qsizetype zeros = content.count('\0') + content.count("\\0") + content.count("\\x0");
  return zeros <= mostZeros ? Condition::Readable : Condition::Refused;
}

/// Moves a store that was refused out of the way. False when something that was
/// not read still stands where the store is to be written.
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

/// Whether the next load will read the store once these values are in it. A store
/// that is not a file is always read.
bool canComeBack(const QString& storePath, const Values& values) {
  // A zero byte takes at least one character, so that a store with few characters
  // cannot have too many zeros. Only a long one is written out for a trial.
  if (storePath.isEmpty() || QFileInfo(storePath).size() + lengthOf(values) <= mostZeros)
    return true;
  QTemporaryFile trial(storePath + QStringLiteral(".XXXXXX"));
  const auto old = files::read(storePath, longestStore);
  if (!trial.open() || (old && trial.write(old->bytes) < 0))
    return false;
  trial.close();
  return Store(StorePlace{trial.fileName()}).set(values) &&
         conditionOf(trial.fileName()) == Condition::Readable;
}

#ifdef Q_OS_UNIX

// A client that is killed while it saves leaves the toolkit's lock file behind,
// and the next save would wait for half a minute for it to go. A living client
// has locked that file with the system too, so the system tells whether the lock
// file is abandoned. Between making the file and locking it a living client looks
// like a killed one: two may then save at once, and the later file stays.
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

// A password must never stand in a file that others can open. The toolkit gives
// the file that it writes the permissions of the one that it replaces, from the
// first byte on. So a private file is put there first, where there is none.
void makePrivate(const QString& path) {
  makeOwnFolder(QFileInfo(path).path());
  if (files::kindOf(path) == files::Kind::Ordinary) {
    if (QFile::setPermissions(path, ownerOnly))
      return;
    QFile::remove(path);  // another user's file: one of our own takes its place
  }
  QFile created(path);
  (void)created.open(QIODevice::ReadWrite, ownerOnly);  // a folder in its place stays as it is
}

// The toolkit gives the new file the old one's name without a look at whether all
// of it reached the disk, so that a full disk would cost the options. Therefore a
// trial file of that size is written first. A folder that takes no trial file takes
// no new store either: the toolkit will then write into the old one.
bool diskHasRoom(const QString& storePath, const Values& values) {
  constexpr qint64 someOptions = qint64{64} * 1024;
  constexpr qint64 longestCharacter = 6;  // bytes, where it is written as an escape
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
  const QString file = fileOf(place_);
  if (conditionOf(file) != Condition::Readable) {
    qCWarning(files::filesLog) << "the settings are the defaults, because this cannot be opened, is"
                               << "too long or nested too deep, or is no file:" << file;
    record = ClientSettings();
    return fallback;
  }
  const Store store(place_);
  unread_ = store.hasUnread();
  if (unread_)
    qCWarning(files::filesLog) << "some lines of the settings make no sense in" << file;
  const WindowPlace place{store.value(sizeKey, fallback.size).toSize(),
                          store.value(posKey, fallback.pos).toPoint()};
  for (const SettingsField& field : fields())
    assign(record, field, store.value(QLatin1String(field.storeKey), field.defaultValue));
  return place;
}

void SettingsStore::save(const ClientSettings& record, const WindowPlace& place) {
  if (const auto why = failureOfSave(record, place))
    qCWarning(files::filesLog) << "the settings were not saved to" << fileOf(place_) << "because"
                               << *why;
}

std::optional<const char*> SettingsStore::failureOfSave(const ClientSettings& record,
                                                        const WindowPlace& place) {
  const QString file = fileOf(place_);
  if (!makeWay(file))
    return "something else stands there and cannot be moved";
  Store store(place_);
  if ((unread_ || store.hasUnread()) && !files::keepBeside(file, files::Access::OwnerOnly))
    return "there are lines in it that make no sense, and no copy of them can be kept";
  unread_ = false;
  const Values values = valuesOf(record, place);
#ifdef Q_OS_UNIX
  // Elsewhere, and on macOS, the system keeps its own store for its user alone.
  if (!file.isEmpty()) {
    makePrivate(file);
    removeAbandonedLock(file);
    if (!diskHasRoom(file, values))
      return "the disk has no room";
  }
#endif
  if (!canComeBack(file, values))
    return "the next start would refuse to read them";
  if (!store.set(values))
    return "the toolkit cannot write there";
  return std::nullopt;
}

}  // namespace kelmora::settings

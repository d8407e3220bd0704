#include <QDateTime>
#include <QDir>
#include <QGuiApplication>
#include <QSettings>
#include <QStringConverter>
#include <algorithm>

#include "FuzzTarget.h"
#include "StoredFonts.h"
#include "Surroundings.h"
#include "settings/SettingsFields.h"
#include "settings/SettingsStore.h"
#include "support/FileText.h"
#include "support/OwnFolder.h"

using namespace kelmora;
using namespace kelmora::settings;

namespace {

/// The two keys of the window's place.
constexpr std::size_t placeKeys = 2;

const QString& storePath() {
  static const QString path = QDir::current().absoluteFilePath(QStringLiteral("store.conf"));
  return path;
}

/// The toolkit reads the file out of the fuzzer's sight, so that it is told here
/// what came of it: which options changed, and how long they are now.
constexpr std::size_t optionCount = 36;
#ifdef Q_OS_LINUX  // the fuzzer has such counters there alone
__attribute__((section("__libfuzzer_extra_counters")))
#endif
std::uint8_t changes[placeKeys + optionCount];

void tellFuzzer(const ClientSettings& record, const WindowPlace& place) {
  static const ClientSettings usual;
  std::uint8_t* change = changes;
  *change++ = place.size == WindowPlace().size ? 0 : 1;
  *change++ = place.pos == WindowPlace().pos ? 0 : 1;
  for (const SettingsField& field : settings::fields().first(optionCount)) {
    const QVariant value = settings::storedValue(record, field);
    const auto length = std::min<qsizetype>(value.toString().size(), 254);
    const bool changed = value != settings::storedValue(usual, field);
    *change++ = static_cast<std::uint8_t>(changed ? 1 + length : 0);
  }
}

/// A store that changes within the clock's last digit would be taken for the
/// one that the toolkit has read before.
void setNewTime(const QString& path) {
  static qint64 seconds = 0;
  QFile file(path);
  fuzz::require(
      file.open(QIODevice::ReadWrite) && file.setFileTime(QDateTime::fromSecsSinceEpoch(++seconds),
                                                          QFileDevice::FileModificationTime),
      "the file's time can be set");
}

/// What a field of each kind makes of a value, told by the toolkit alone.
QVariant expected(const SettingsField& field, const QVariant& stored) {
  switch (field.kind()) {
    case FieldKind::Size:
      return stored.toSize();
    case FieldKind::Flag:
      return stored.toInt() == 0 ? 0 : 1;
    case FieldKind::Integer:
      return stored.toInt();
    case FieldKind::Text:
      return QString::fromUtf8(QByteArray(QStringEncoder(QStringEncoder::Utf8)(stored.toString())));
    case FieldKind::Colour:
      return QString::fromLatin1(stored.toString().toLatin1().left(7).constData());
    case FieldKind::Font:
      break;
  }
  return {};
}

void requireAsStored(const ClientSettings& record) {
  QSettings store(storePath(), QSettings::IniFormat);
  store.beginGroup(QStringLiteral("Global Settings"));
  for (const SettingsField& field : settings::fields()) {
    const QVariant stored = store.value(QLatin1String(field.storeKey), field.defaultValue);
    fuzz::require(field.kind() == FieldKind::Font ||
                      settings::storedValue(record, field) == expected(field, stored),
                  field.storeKey);
  }
}

/// The same in every way that can be stored: two fonts that are written the
/// same need not be equal.
void requireSame(const ClientSettings& before, const ClientSettings& after) {
  for (const SettingsField& field : settings::fields())
    fuzz::require(settings::storedValue(before, field) == settings::storedValue(after, field),
                  field.storeKey);
}

}  // namespace

/// The input is the store's whole file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Surroundings<QGuiApplication>::provide();
  const QString& path = storePath();
  const QByteArray bytes = fuzz::bytesOf(data, size);
  fuzz::require(put(path, bytes), "the file can be made");
  setNewTime(path);

  SettingsStore store({path});
  ClientSettings record;
  const WindowPlace place = store.load(record);
  tellFuzzer(record, place);
  requireAsStored(record);
  fuzz::requireUsableFonts(record);
  store.save(record, place);
  setNewTime(path);
  const QString backup = path + QStringLiteral(".bak");
  fuzz::require(!QFile::exists(backup) || contentsOf(backup) == bytes,
                "what could not be read is kept as it was");
  QFile::remove(backup);
  fuzz::require(namesHere().size() == 1, "no other file is left behind");

  ClientSettings again;
  fuzz::require(SettingsStore({path}).load(again) == place, "the window's place comes back");
  requireSame(record, again);
  QSettings stored(path, QSettings::IniFormat);
  stored.beginGroup(QStringLiteral("Global Settings"));
  fuzz::require(static_cast<std::size_t>(stored.childKeys().size()) >= placeKeys + optionCount,
                "every option has its key");
  return 0;
}

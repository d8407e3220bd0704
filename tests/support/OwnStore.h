// A settings store of the test's own, to read and to fill.
#pragma once

#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include "settings/SettingsStore.h"

using namespace kelmora;
using namespace kelmora::settings;

/// A settings store of the test's own: a file in a folder that vanishes with
/// this object. Whoever makes a window or reads a store names it, so that no
/// system's way to the user's own store can lead a test there.
class OwnStore {
 public:
  [[nodiscard]] settings::StorePlace place() const {
    return {folder_.filePath(QStringLiteral("store.ini"))};
  }
  [[nodiscard]] QVariant value(const QString& key) const { return opened().value(inGroup(key)); }
  [[nodiscard]] QStringList keys() const { return opened().allKeys(); }
  void set(const QString& key, const QVariant& value) const {
    opened().setValue(inGroup(key), value);
  }
  void clear() const { opened().clear(); }

 private:
  [[nodiscard]] QSettings opened() const { return {place().iniFile, QSettings::IniFormat}; }
  [[nodiscard]] static QString inGroup(const QString& key) {
    return QStringLiteral("Global Settings/") + key;
  }

  QTemporaryDir folder_;
};

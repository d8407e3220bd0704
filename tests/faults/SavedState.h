#pragma once

#include <optional>

#include "automation/core/AutomationFiles.h"
#include "settings/SettingsStore.h"
#include "support/FileText.h"

using namespace kelmora;
using namespace kelmora::automation;
using namespace kelmora::settings;

/// The settings store of these tests, in the working directory.
inline const QString storeFolder = QStringLiteral("settings");
inline const QString storePath = storeFolder + QStringLiteral("/store.conf");

/// All that a player has stored, in one of several versions that differ in
/// every file, also in its length.
struct SavedState {
  explicit SavedState(int version) {
    const int entries = 100 + version;
    for (int i = 0; i < entries; ++i) {
      const QString name = QStringLiteral("entry%1of%2").arg(i).arg(version);
      aliases.append({name, {QStringLiteral("north"), QString(20, u'x'), name}});
      triggers.append({name + QStringLiteral(" says {*}"), {QStringLiteral("say ") + name}});
      variables.insert(name, QString::number(version));
    }
    settings.hostName = QStringLiteral("host%1.example").arg(entries);
    settings.port = 5000 + version;
    settings.proxyPassword = QString(entries, u'p');
    place.size += QSize(version, version);
  }

  /// Nothing of anything.
  SavedState() = default;

  /// What a start finds; nothing where a file makes no sense.
  [[nodiscard]] static std::optional<SavedState> load() {
    SavedState found;
    found.place = SettingsStore({storePath}).load(found.settings);
    AutomationFiles files;
    if (!files.loadAliases(found.aliases) || !files.loadTriggers(found.triggers) ||
        !files.loadVariables(found.variables))
      return std::nullopt;
    return found;
  }

  /// Whether each save said that it succeeded; the store says nothing.
  [[nodiscard]] bool save() const {
    AutomationFiles files;
    const bool saved = files.writeAliases(aliases) && files.writeTriggers(triggers) &&
                       files.writeVariables(variables);
    SettingsStore({storePath}).save(settings, place);
    return saved;
  }

  friend bool operator==(const SavedState& a, const SavedState& b) {
    return a.aliases.entries() == b.aliases.entries() &&
           a.triggers.entries() == b.triggers.entries() && a.variables == b.variables &&
           a.settings == b.settings && a.place == b.place;
  }

  AliasTable aliases;
  TriggerTable triggers;
  QMap<QString, QString> variables;
  ClientSettings settings;
  WindowPlace place;
};

/// The bytes of every stored file, in one order.
inline QByteArrayList storedBytes() {
  QByteArrayList all;
  for (const QString& name : {QString(automation::aliasesPath), QString(automation::triggersPath),
                              QString(automation::variablesPath), storePath})
    all << contentsOf(name);
  return all;
}

#pragma once

#include <QtGlobal>
#include <utility>

#include "automation/core/AliasTable.h"
#include "automation/core/AutomationFiles.h"
#include "automation/core/MacroTable.h"
#include "automation/core/TriggerTable.h"
#include "script/VariableTable.h"
#include "settings/ClientSettings.h"
#include "settings/SettingsStore.h"

namespace kelmora::app {

/// What belongs to the player: the options and the automation, and where they are
/// kept. The window reads them at its start; dialogs and editors then change them in
/// place.
struct Profile {
  /// The options are kept in the user's own store, unless told otherwise.
  explicit Profile(settings::StorePlace place = {}) : store(std::move(place)) {}
  Q_DISABLE_COPY_MOVE(Profile)

  settings::SettingsStore store;
  settings::ClientSettings settings;
  automation::AutomationFiles files;
  automation::MacroTable macros;
  automation::TriggerTable triggers;
  automation::AliasTable aliases;
  script::VariableTable variables;
};

}  // namespace kelmora::app

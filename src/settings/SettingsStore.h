#pragma once

#include <QPoint>
#include <QSize>
#include <QString>

#include "settings/ClientSettings.h"
#include "settings/UsableValues.h"

namespace kelmora::settings {

/// Where the window was when the options were saved, in pixels.
struct WindowPlace {
  QSize size = defaultWindowSize;
  QPoint pos = defaultWindowPos;

  friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

/// Where the options are kept. Whoever makes a window says so, and nobody but
/// the program itself names the user's own store.
struct StorePlace {
  /// The path of an INI file; empty for the user's own store, in the platform's
  /// native form.
  QString iniFile = {};
};

/// The options' store. It remembers whether something stands in it that it
/// could not read: before that is written over it is kept beside, as NAME.bak,
/// or NAME.bak2 and so on.
class SettingsStore {
 public:
  explicit SettingsStore(StorePlace place);

  /// Fills the record from the store; what is missing or unreadable there is its
  /// default. Returns the place as it was stored, for the caller to check
  /// (UsableValues.h). Never writes or creates anything.
  [[nodiscard]] WindowPlace load(ClientSettings& record);

  /// Writes record and place to the store, a file that its owner alone can read.
  /// Failures are silent: the old store stands, and the next save tries again.
  /// What the next load would refuse is such a failure, and so is something
  /// unread that cannot be kept.
  void save(const ClientSettings& record, const WindowPlace& place);

 private:
  StorePlace place_;
  bool unread_ = false;
};

}  // namespace kelmora::settings

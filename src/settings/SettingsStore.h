#pragma once

#include <QPoint>
#include <QSize>
#include <QString>
#include <optional>

#include "settings/ClientSettings.h"
#include "settings/UsableValues.h"

namespace kelmora::settings {

/// Where the window was when the options were saved, in pixels.
struct WindowPlace {
  QSize size = defaultWindowSize;
  QPoint pos = defaultWindowPos;

  friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

/// Where the options are kept. It is passed in by whoever makes the window, so
/// that tests and tools cannot write to the user's own store by mistake.
struct StorePlace {
  /// The path of an INI file. Empty means the user's own store in the form that
  /// is usual on the platform, which only the program itself asks for.
  QString iniFile = {};
};

/// The place where the options outlive the program. It never writes over a file
/// that it could not read in full: that is first copied to NAME.bak, or to
/// NAME.bak2 and so on.
class SettingsStore {
 public:
  explicit SettingsStore(StorePlace place);

  /// Fills the record from the store; an option that is missing or unreadable
  /// there gets its default. Returns the window's place as it was stored, for the
  /// caller to check (UsableValues.h). Never writes or creates anything.
  [[nodiscard]] WindowPlace load(ClientSettings& record);

  /// Writes record and place to the store, a file that its owner alone can read.
  /// A save that fails leaves the old store and a word in the log of the files;
  /// the player is not told, and the next save tries again. It fails, too, when
  /// the next load would refuse what it writes, and when something unread cannot
  /// be copied.
  void save(const ClientSettings& record, const WindowPlace& place);

 private:
  [[nodiscard]] std::optional<const char*> failureOfSave(const ClientSettings& record,
                                                         const WindowPlace& place);

  StorePlace place_;
  bool unread_ = false;  ///< whether the store holds something that was not read
};

}  // namespace kelmora::settings

#pragma once

#include <QPoint>
#include <QSize>

#include "settings/ClientSettings.h"
#include "settings/UsableValues.h"

/// Where the window was when the options were saved, in pixels.
struct WindowPlace {
  QSize size = settings::defaultWindowSize;
  QPoint pos = settings::defaultWindowPos;

  friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

namespace settings {

/// Fills the record from the user's store; what is missing or unreadable there
/// is its default. Returns the place as it was stored, for the caller to check
/// (UsableValues.h). Never writes or creates anything.
[[nodiscard]] WindowPlace load(ClientSettings& record);

/// Writes record and place to the user's store, a file that its owner alone can
/// read. Failures are silent: the next save tries again.
void save(const ClientSettings& record, const WindowPlace& place);

}  // namespace settings

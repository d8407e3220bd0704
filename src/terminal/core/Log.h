#pragma once

#include <QLoggingCategory>

namespace kelmora::terminal {

/// What the pane drops, refuses or cannot save. It holds numbers and never text of
/// the server or the player. Silent unless it is switched on, as with
/// QT_LOGGING_RULES="kelmora.pane=true".
Q_DECLARE_LOGGING_CATEGORY(paneLog)

}  // namespace kelmora::terminal

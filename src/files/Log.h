#pragma once

#include <QLoggingCategory>

namespace kelmora::files {

/// What becomes of the player's files: reads, writes and copies that failed, and
/// where in a file a load stopped. Silent unless it is switched on, as with
/// QT_LOGGING_RULES="kelmora.files=true".
Q_DECLARE_LOGGING_CATEGORY(filesLog)

}  // namespace kelmora::files

#pragma once

#include <QLoggingCategory>

namespace kelmora::script {

/// What scripts lose: runs that were stopped, texts that were cut, timers that
/// were dropped. The text of actions is left out of it. Silent unless it is
/// switched on, as with QT_LOGGING_RULES="kelmora.scripts=true".
Q_DECLARE_LOGGING_CATEGORY(scriptsLog)

}  // namespace kelmora::script

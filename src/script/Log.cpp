#include "script/Log.h"

namespace kelmora::script {

// A fatal message is the least that shows by itself, and none is ever written.
Q_LOGGING_CATEGORY(scriptsLog, "kelmora.scripts", QtFatalMsg)

}  // namespace kelmora::script

#include "files/Log.h"

namespace kelmora::files {

// A fatal message is the least that shows by itself, and none is ever written.
Q_LOGGING_CATEGORY(filesLog, "kelmora.files", QtFatalMsg)

}  // namespace kelmora::files

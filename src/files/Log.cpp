#include "files/Log.h"

namespace kelmora::files {

// From below fatal messages on everything is off until it is asked for, and there are
// no fatal messages.
Q_LOGGING_CATEGORY(filesLog, "kelmora.files", QtFatalMsg)

}  // namespace kelmora::files

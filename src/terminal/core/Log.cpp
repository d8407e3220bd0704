#include "terminal/core/Log.h"

namespace kelmora::terminal {

// Only fatal messages are on by default, and there are none.
Q_LOGGING_CATEGORY(paneLog, "kelmora.pane", QtFatalMsg)

}  // namespace kelmora::terminal

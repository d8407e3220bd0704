#include "terminal/markup/Log.h"

namespace kelmora::terminal {

// Only fatal messages are on by default, and there are none.
Q_LOGGING_CATEGORY(markupLog, "kelmora.markup", QtFatalMsg)

}  // namespace kelmora::terminal

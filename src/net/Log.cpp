#include "net/Log.h"

namespace kelmora::net {

// Below fatal messages, of which there are none here, everything is off.
Q_LOGGING_CATEGORY(connectionLog, "kelmora.connection", QtFatalMsg)

}  // namespace kelmora::net

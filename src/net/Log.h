#pragma once

#include <QLoggingCategory>

namespace kelmora::net {

/// What becomes of the connection: attempts, ends, errors, the proxy, and lines
/// that were lost. Never a password, and never the text of a line. Silent unless
/// it is switched on, as with QT_LOGGING_RULES="kelmora.connection=true".
Q_DECLARE_LOGGING_CATEGORY(connectionLog)

}  // namespace kelmora::net

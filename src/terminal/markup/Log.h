#pragma once

#include <QLoggingCategory>

namespace kelmora::terminal {

/// What of the game's own tags is not shown. It holds numbers and never text of the
/// server. Silent unless it is switched on, as with
/// QT_LOGGING_RULES="kelmora.markup=true".
Q_DECLARE_LOGGING_CATEGORY(markupLog)

}  // namespace kelmora::terminal

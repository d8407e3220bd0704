#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QMap>
#include <QString>

#include "automation/core/Reading.h"

namespace kelmora::automation {

namespace variablesfile {

/// Adds the variables of the text, which is Latin-1. The first line that is neither
/// empty nor defines a variable is a bad one, and so is one that defines a variable
/// of the map a second time: the reading stops there and leaves the rest alone.
[[nodiscard]] Reading read(QByteArrayView text, QMap<QString, QString>& variables);

/// An empty line and a line for each variable, in the order of the map. The text
/// is Latin-1, and other characters become "?". Otherwise names and values are
/// written as they are, even where they will not be read back the same.
[[nodiscard]] QByteArray toText(const QMap<QString, QString>& variables);

}  // namespace variablesfile

}  // namespace kelmora::automation

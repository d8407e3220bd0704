#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QMap>
#include <QString>

namespace kelmora::automation {

namespace variablesfile {

/// Adds each variable of the text, read as Latin-1. False at the first line
/// that is neither empty nor a variable, or that names a variable the map
/// already holds: what comes after it is not looked at.
[[nodiscard]] bool read(QByteArrayView text, QMap<QString, QString>& variables);

/// An empty line and a line per variable, in the order of the map, as Latin-1
/// with "?" for any other character. Names and values are written as they are,
/// whether or not they can be read back.
[[nodiscard]] QByteArray toText(const QMap<QString, QString>& variables);

}  // namespace variablesfile

}  // namespace kelmora::automation

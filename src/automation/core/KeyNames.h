#pragma once

#include <QString>
#include <QStringView>

namespace kelmora::automation {

/// The name a key is listed and stored under: one of 22 names for the function
/// keys and the keypad, for any other code the one character of its low 16 bits.
[[nodiscard]] QString keyCodeToName(int code);

/// The key code of a name, the 22 names compared exactly. Of any other text the
/// first character decides: up to 127 it is the code, from 128 to 255 the code
/// less 256 (so é, 233, is -23), and 0 above. An empty name gives 0.
[[nodiscard]] int keyNameToCode(QStringView name);

}  // namespace kelmora::automation

#pragma once

#include <QString>
#include <QStringView>

namespace kelmora::automation {

/// The name under which a key is listed and stored. Function keys and the keys of
/// the keypad have one of 22 names; the name of any other key is the one character
/// whose value is the low 16 bits of its code.
[[nodiscard]] QString keyCodeToName(int code);

/// The code of the key with that name. Where the text is none of the 22 names to the
/// letter, only its first character counts: up to 127 its value is the code; from
/// 128 to 255 the code is 256 less, so that "é", 233, is -23; above 255, and for an
/// empty text, the code is 0.
[[nodiscard]] int keyNameToCode(QStringView name);

}  // namespace kelmora::automation

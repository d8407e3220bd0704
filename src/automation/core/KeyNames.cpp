#include "automation/core/KeyNames.h"

#include <Qt>
#include <algorithm>
#include <array>

namespace kelmora::automation {

namespace {

struct NamedKey {
  int code;
  QLatin1StringView name;
};

// The keys of the keypad are named by the codes that they send without Num Lock.
constexpr std::array<NamedKey, 22> namedKeys{{
    {Qt::Key_F1, QLatin1StringView("Key_F1")},
    {Qt::Key_F2, QLatin1StringView("Key_F2")},
    {Qt::Key_F3, QLatin1StringView("Key_F3")},
    {Qt::Key_F4, QLatin1StringView("Key_F4")},
    {Qt::Key_F5, QLatin1StringView("Key_F5")},
    {Qt::Key_F6, QLatin1StringView("Key_F6")},
    {Qt::Key_F7, QLatin1StringView("Key_F7")},
    {Qt::Key_F8, QLatin1StringView("Key_F8")},
    {Qt::Key_F9, QLatin1StringView("Key_F9")},
    {Qt::Key_F10, QLatin1StringView("Key_F10")},
    {Qt::Key_F11, QLatin1StringView("Key_F11")},
    {Qt::Key_F12, QLatin1StringView("Key_F12")},
    {Qt::Key_Insert, QLatin1StringView("NUMPAD0")},
    {Qt::Key_End, QLatin1StringView("NUMPAD1")},
    {Qt::Key_Down, QLatin1StringView("NUMPAD2")},
    {Qt::Key_PageDown, QLatin1StringView("NUMPAD3")},
    {Qt::Key_Left, QLatin1StringView("NUMPAD4")},
    {Qt::Key_Clear, QLatin1StringView("NUMPAD5")},
    {Qt::Key_Right, QLatin1StringView("NUMPAD6")},
    {Qt::Key_Home, QLatin1StringView("NUMPAD7")},
    {Qt::Key_Up, QLatin1StringView("NUMPAD8")},
    {Qt::Key_PageUp, QLatin1StringView("NUMPAD9")},
}};

}  // namespace

QString keyCodeToName(int code) {
  const auto key = std::find_if(namedKeys.begin(), namedKeys.end(),
                                [&](const NamedKey& named) { return named.code == code; });
  if (key != namedKeys.end())
    return key->name;
  return QChar(static_cast<char16_t>(static_cast<quint32>(code) & 0xFFFFU));
}

int keyNameToCode(QStringView name) {
  const auto key = std::find_if(namedKeys.begin(), namedKeys.end(),
                                [&](const NamedKey& named) { return named.name == name; });
  if (key != namedKeys.end())
    return key->code;
  if (name.isEmpty() || name.front() > QChar(0xFF))
    return 0;
  // A quirk kept on purpose: the character is taken as a signed byte.
  return static_cast<qint8>(name.front().unicode());
}

}  // namespace kelmora::automation

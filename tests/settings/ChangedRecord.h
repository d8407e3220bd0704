#pragma once

#include "settings/SettingsFields.h"

using namespace kelmora;
using namespace kelmora::settings;

/// A stored value that is not the field's default, and another one for every
/// number. It survives an export, too: it has no blank, and every text of it is a
/// number.
inline QVariant changedValue(const SettingsField& field, int number) {
  switch (field.kind()) {
    case FieldKind::Font:
      return QFont(QStringLiteral("Monospace"), 20 + number, QFont::Bold, true).toString();
    case FieldKind::Size:
      return QSize(100 + number, 200 + number);
    case FieldKind::Flag:
      return field.defaultValue.toInt() == 0 ? 1 : 0;
    case FieldKind::Text:
    case FieldKind::Integer:
      return QString::number(10'000 + number);
    case FieldKind::Colour:
      return QStringLiteral("#1111%1").arg(number, 2, 10, QLatin1Char('0'));
  }
  return {};
}

/// A record in which no field has its default, and none the value of another.
inline ClientSettings changedRecord() {
  ClientSettings record;
  int number = 0;
  for (const SettingsField& field : settings::fields())
    settings::assign(record, field, changedValue(field, number++));
  return record;
}

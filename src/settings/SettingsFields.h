#pragma once

#include <QVariant>
#include <span>
#include <variant>

#include "settings/ClientSettings.h"

namespace kelmora::settings {

/// One colour of one of the two palettes.
struct ColourMember {
  ColourTexts ClientSettings::*palette;
  std::size_t index;
};

/// Where a field lives; which alternative it is decides how it is converted.
using FieldMember =
    std::variant<QFont ClientSettings::*, QSize ClientSettings::*, bool ClientSettings::*,
                 QString ClientSettings::*, int ClientSettings::*, ColourMember>;

/// In the order of FieldMember's alternatives.
enum class FieldKind { Font, Size, Flag, Text, Integer, Colour };

/// How the export file writes a text.
enum class ExportForm {
  Plain,
  NullWhenEmpty,  ///< "(null)" for an empty text, which would be no value there
  Number,         ///< the text's integer; 0 and what is none stand for the empty text
};

/// One row of the table that the store and the export file share.
struct SettingsField {
  const char* storeKey;
  const char* exportKey;  ///< a Size is two lines there, with ".width" and ".height" added
  FieldMember member;
  QVariant defaultValue;  ///< in the form in which the store holds it
  int exportPlace;        ///< the export file has an order of its own
  ExportForm exportForm = ExportForm::Plain;

  [[nodiscard]] FieldKind kind() const { return static_cast<FieldKind>(member.index()); }
};

/// All fields in the order in which the store is read and written: twenty
/// options, then the sixteen colours.
[[nodiscard]] std::span<const SettingsField> fields();

/// Takes a stored value over into the record. A value of the wrong kind
/// converts as QVariant converts it; a flag is any integer but zero.
void assign(ClientSettings& record, const SettingsField& field, const QVariant& stored);

/// The field in the form in which the store holds it.
[[nodiscard]] QVariant storedValue(const ClientSettings& record, const SettingsField& field);

}  // namespace kelmora::settings

#pragma once

#include <QVariant>
#include <span>
#include <variant>
#include <vector>

#include "settings/ClientSettings.h"

namespace kelmora::settings {

/// One colour of one of the two palettes.
struct ColourMember {
  ColourTexts ClientSettings::*palette;
  Colour colour;

  friend bool operator==(const ColourMember&, const ColourMember&) = default;
};

/// The member of the record that a field stands for. Its type decides how the
/// value is converted.
using FieldMember =
    std::variant<QFont ClientSettings::*, QSize ClientSettings::*, bool ClientSettings::*,
                 QString ClientSettings::*, int ClientSettings::*, ColourMember>;

/// In the order of FieldMember's alternatives.
enum class FieldKind { Font, Size, Flag, Text, Integer, Colour };

/// The sections of the export file, in the order in which they stand there; the
/// fields of one section stand there in the order of the table. A field that is
/// to stand between two of one section divides it: name the second half.
enum class ExportSection {
  Style,
  Fonts,
  Icons,
  Display,
  Server,
  ProxyType,
  ProxyAccess,
  LinksAndSplitting,
  Colours
};

/// How the export file writes a text.
enum class ExportForm {
  Plain,
  NullWhenEmpty,  ///< an empty text is "(null)": a line must not end behind its key
  Number,         ///< written as an integer, 0 where it is none; read as text, empty for 0
};

/// One row of the table that the store and the export file share.
struct SettingsField {
  const char* storeKey;
  FieldMember member;
  QVariant defaultValue;  ///< in the form in which the store holds it
  ExportSection section;
  ExportForm exportForm = ExportForm::Plain;
  /// A size is two lines in the export file: this with ".width" behind it, and
  /// with ".height".
  const char* exportKey = storeKey;

  [[nodiscard]] FieldKind kind() const { return static_cast<FieldKind>(member.index()); }
};

/// All fields in the order in which the store is read and written: twenty
/// options, then the sixteen colours.
[[nodiscard]] std::span<const SettingsField> fields();

/// The same fields in the order of the export file.
[[nodiscard]] std::vector<const SettingsField*> fieldsInExportOrder();

/// Takes a stored value over into the record. A value of the wrong kind
/// converts as QVariant converts it; a flag is on for any integer but zero.
void assign(ClientSettings& record, const SettingsField& field, const QVariant& stored);

/// The field in the form in which the store holds it.
[[nodiscard]] QVariant storedValue(const ClientSettings& record, const SettingsField& field);

}  // namespace kelmora::settings

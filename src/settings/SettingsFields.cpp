#include "settings/SettingsFields.h"

#include <QStringConverter>

#include "settings/ServerHosts.h"
#include "settings/UsableValues.h"

namespace kelmora::settings {

namespace {

using Record = ClientSettings;

SettingsField colour(const char* key, ColourTexts Record::*palette, std::size_t index,
                     const char* text) {
  constexpr int firstColour = 20;
  const auto place = static_cast<int>(index) + (palette == &Record::boldColour ? 8 : 0);
  return {key, key, ColourMember{palette, index}, QString::fromLatin1(text), firstColour + place};
}

const std::array<SettingsField, 36>& table() {
  constexpr auto normal = &Record::normalColour;
  constexpr auto bold = &Record::boldColour;
  static const std::array<SettingsField, 36> rows{{
      {"outfont", "outFont", &Record::outFont, QStringLiteral("Courier,10,-1,5,50,0,0,0,0,0"), 1},
      {"infont", "inFont", &Record::inFont, QStringLiteral("Courier,8,-1,5,50,0,0,0,0,0"), 2},
      {"displayAnsiColor", "displayAnsiColor", &Record::displayAnsiColor, 1, 4},
      {"displayLocalEcho", "displayLocalEcho", &Record::displayLocalEcho, 1, 5},
      {"playBeeps", "playBeeps", &Record::playBeeps, 1, 6},
      {"parseHtml", "parseHtml", &Record::parseHtml, 0, 7},
      {"flushInput", "flushInput", &Record::flushInput, 0, 8},
      {"displayURLs", "displayURLs", &Record::displayURLs, 1, 17},
      {"splitInput", "splitInput", &Record::splitInput, 1, 18},
      {"splitString", "splitString", &Record::splitString, QStringLiteral(";"), 19,
       ExportForm::NullWhenEmpty},
      {"hostName", "hostName", &Record::hostName, serverHost(), 9},
      {"port", "port", &Record::port, defaultPort, 10},
      {"useProxyServer", "useProxyServer", &Record::useProxyServer, 0, 11},
      {"proxyHostName", "proxyHostName", &Record::proxyHostName, QString(), 13,
       ExportForm::NullWhenEmpty},
      {"proxyPortNumber", "proxyPortNumber", &Record::proxyPortNumber, QString(), 14,
       ExportForm::Number},
      {"proxyUserName", "proxyUserName", &Record::proxyUserName, QString(), 15,
       ExportForm::NullWhenEmpty},
      {"proxyPassword", "proxyPassword", &Record::proxyPassword, QString(), 16,
       ExportForm::NullWhenEmpty},
      {"proxyType", "proxyType", &Record::proxyType, 1, 12},
      {"interfaceStyle", "interfaceStyle", &Record::interfaceStyle, QStringLiteral("Plastique"), 0},
      {"iconSize", "iconSize", &Record::iconSize, defaultIconSize, 3},
      colour("black", normal, 0, "#000000"),
      colour("red", normal, 1, "#660000"),
      colour("green", normal, 2, "#006600"),
      colour("yellow", normal, 3, "#5E610B"),
      colour("blue", normal, 4, "#000099"),
      colour("magenta", normal, 5, "#990066"),
      colour("cyan", normal, 6, "#008080"),
      colour("white", normal, 7, "#BDBDBD"),
      colour("blackB", bold, 0, "#666666"),
      colour("redB", bold, 1, "#FF0000"),
      colour("greenB", bold, 2, "#00FF00"),
      colour("yellowB", bold, 3, "#FFFF00"),
      colour("blueB", bold, 4, "#2E2EFE"),
      colour("magentaB", bold, 5, "#FF00FF"),
      colour("cyanB", bold, 6, "#00FFFF"),
      colour("whiteB", bold, 7, "#FFFFFF"),
  }};
  return rows;
}

// One conversion per kind of field, each way.
struct Assign {
  Record& record;
  const QVariant& stored;

  void operator()(QFont Record::*m) const { record.*m = fontFromText(stored.toString()); }
  void operator()(QSize Record::*m) const { record.*m = stored.toSize(); }
  void operator()(bool Record::*m) const { record.*m = stored.toInt() != 0; }
  // Escapes in a file can name half a surrogate pair, which is no text and could
  // not be written again.
  void operator()(QString Record::*m) const {
    const QByteArray written = QStringEncoder(QStringEncoder::Utf8)(stored.toString());
    record.*m = QString::fromUtf8(written);
  }
  void operator()(int Record::*m) const { record.*m = stored.toInt(); }
  void operator()(const ColourMember& m) const {
    (record.*m.palette)[m.index].assign(stored.toString().toLatin1());
  }
};

struct Stored {
  const Record& record;

  QVariant operator()(QFont Record::*m) const { return (record.*m).toString(); }
  QVariant operator()(QSize Record::*m) const { return record.*m; }
  QVariant operator()(bool Record::*m) const { return (record.*m) ? 1 : 0; }
  QVariant operator()(QString Record::*m) const { return record.*m; }
  QVariant operator()(int Record::*m) const { return record.*m; }
  QVariant operator()(const ColourMember& m) const {
    return QString::fromLatin1((record.*m.palette)[m.index].text());
  }
};

}  // namespace

std::span<const SettingsField> fields() {
  return table();
}

void assign(ClientSettings& record, const SettingsField& field, const QVariant& stored) {
  std::visit(Assign{record, stored}, field.member);
}

QVariant storedValue(const ClientSettings& record, const SettingsField& field) {
  return std::visit(Stored{record}, field.member);
}

ClientSettings::ClientSettings() {
  for (const SettingsField& field : fields())
    assign(*this, field, field.defaultValue);
}

}  // namespace kelmora::settings

#include "settings/SettingsFields.h"

#include <QStringConverter>
#include <algorithm>

#include "settings/ServerHosts.h"
#include "settings/UsableValues.h"

namespace kelmora::settings {

namespace {

using Record = ClientSettings;

SettingsField colour(const char* key, ColourTexts Record::*palette, Colour which,
                     const char* text) {
  return {key, ColourMember{palette, which}, QString::fromLatin1(text), ExportSection::Colours};
}

const auto& table() {
  using enum ExportSection;
  using enum Colour;
  constexpr auto nullWhenEmpty = ExportForm::NullWhenEmpty;
  constexpr auto normal = &Record::normalColour;
  constexpr auto bold = &Record::boldColour;
  static const auto rows = std::to_array<SettingsField>({
      {"outfont", &Record::outFont, QStringLiteral("Courier,10,-1,5,50,0,0,0,0,0"), Fonts,
       ExportForm::Plain, "outFont"},
      {"infont", &Record::inFont, QStringLiteral("Courier,8,-1,5,50,0,0,0,0,0"), Fonts,
       ExportForm::Plain, "inFont"},
      {"displayAnsiColor", &Record::displayAnsiColor, 1, Display},
      {"displayLocalEcho", &Record::displayLocalEcho, 1, Display},
      {"playBeeps", &Record::playBeeps, 1, Display},
      {"parseHtml", &Record::parseHtml, 0, Display},
      {"flushInput", &Record::flushInput, 0, Display},
      {"displayURLs", &Record::displayURLs, 1, LinksAndSplitting},
      {"splitInput", &Record::splitInput, 1, LinksAndSplitting},
      {"splitString", &Record::splitString, QStringLiteral(";"), LinksAndSplitting, nullWhenEmpty},
      {"hostName", &Record::hostName, serverHost(), Server},
      {"port", &Record::port, defaultPort, Server},
      {"useProxyServer", &Record::useProxyServer, 0, Server},
      {"proxyHostName", &Record::proxyHostName, QString(), ProxyAccess, nullWhenEmpty},
      {"proxyPortNumber", &Record::proxyPortNumber, QString(), ProxyAccess, ExportForm::Number},
      {"proxyUserName", &Record::proxyUserName, QString(), ProxyAccess, nullWhenEmpty},
      {"proxyPassword", &Record::proxyPassword, QString(), ProxyAccess, nullWhenEmpty},
      {"proxyType", &Record::proxyType, 1, ProxyType},
      {"interfaceStyle", &Record::interfaceStyle, QStringLiteral("Plastique"), Style},
      {"iconSize", &Record::iconSize, defaultIconSize, Icons},
      colour("black", normal, Black, "#000000"),
      colour("red", normal, Red, "#660000"),
      colour("green", normal, Green, "#006600"),
      colour("yellow", normal, Yellow, "#5E610B"),
      colour("blue", normal, Blue, "#000099"),
      colour("magenta", normal, Magenta, "#990066"),
      colour("cyan", normal, Cyan, "#008080"),
      colour("white", normal, White, "#BDBDBD"),
      colour("blackB", bold, Black, "#666666"),
      colour("redB", bold, Red, "#FF0000"),
      colour("greenB", bold, Green, "#00FF00"),
      colour("yellowB", bold, Yellow, "#FFFF00"),
      colour("blueB", bold, Blue, "#2E2EFE"),
      colour("magentaB", bold, Magenta, "#FF00FF"),
      colour("cyanB", bold, Cyan, "#00FFFF"),
      colour("whiteB", bold, White, "#FFFFFF"),
  });
  return rows;
}

auto& colourOf(auto& record, const ColourMember& member) {
  return (record.*member.palette).at(static_cast<std::size_t>(member.colour));
}

// How a field of each kind is read from its stored form, and how it is written.
struct Assign {
  Record& record;
  const QVariant& stored;

  void operator()(QFont Record::*m) const { record.*m = fontFromText(stored.toString()); }
  void operator()(QSize Record::*m) const { record.*m = stored.toSize(); }
  void operator()(bool Record::*m) const { record.*m = stored.toInt() != 0; }
  // A store can name half of a surrogate pair by an escape. That is no text and
  // could not be written again, so it becomes the replacement character.
  void operator()(QString Record::*m) const {
    const QByteArray written = QStringEncoder(QStringEncoder::Utf8)(stored.toString());
    record.*m = QString::fromUtf8(written);
  }
  void operator()(int Record::*m) const { record.*m = stored.toInt(); }
  void operator()(const ColourMember& m) const {
    colourOf(record, m).assign(stored.toString().toLatin1());
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
    return QString::fromLatin1(colourOf(record, m).text());
  }
};

}  // namespace

std::span<const SettingsField> fields() {
  return table();
}

std::vector<const SettingsField*> fieldsInExportOrder() {
  std::vector<const SettingsField*> ordered;
  for (const SettingsField& field : fields())
    ordered.push_back(&field);
  std::stable_sort(ordered.begin(), ordered.end(),
                   [](const auto* a, const auto* b) { return a->section < b->section; });
  return ordered;
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

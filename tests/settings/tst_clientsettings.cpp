#include <QGuiApplication>
#include <QTest>
#include <set>
#include <string>

#include "ChangedRecord.h"
#include "settings/ServerHosts.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::settings;

using settings::fields;

namespace {

const SettingsField* find(const QByteArray& key) {
  for (const SettingsField& field : fields())
    if (key == field.storeKey)
      return &field;
  return nullptr;
}

}  // namespace

class TestClientSettings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyOptionHasItsKeyAndDefault_data();
  void everyOptionHasItsKeyAndDefault();
  void everyColourHasItsKeyPlaceAndDefault_data();
  void everyColourHasItsKeyPlaceAndDefault();
  void aNewRecordHoldsTheDefaults();
  void theFieldsStandInTheOrderOfTheStore();
  void noFieldIsNamedTwice();
  void everyRowHasAMemberOfItsOwn();
  void theExportHasEveryFieldOnce();
  void aDefaultIsInTheStoredForm();
  void aFieldGoesOutAsItCameIn_data();
  void aFieldGoesOutAsItCameIn();
  void colourTextKeepsSevenCharacters_data();
  void colourTextKeepsSevenCharacters();
  void equalColourTextsAreEqualWhateverStoodThereBefore();
};

void TestClientSettings::everyOptionHasItsKeyAndDefault_data() {
  QTest::addColumn<QByteArray>("key");
  QTest::addColumn<QByteArray>("exportKey");
  QTest::addColumn<FieldMember>("member");
  QTest::addColumn<QVariant>("expected");
  using Record = ClientSettings;
  const auto row = [](const char* key, const char* exportKey, const FieldMember& member,
                      const QVariant& expected) {
    QTest::addRow("%s", key) << QByteArray(key) << QByteArray(exportKey) << member << expected;
  };
  const auto same = [&row](const char* key, const FieldMember& member, const QVariant& expected) {
    row(key, key, member, expected);
  };
  row("outfont", "outFont", &Record::outFont, QStringLiteral("Courier,10,-1,5,50,0,0,0,0,0"));
  row("infont", "inFont", &Record::inFont, QStringLiteral("Courier,8,-1,5,50,0,0,0,0,0"));
  same("iconSize", &Record::iconSize, QSize(48, 48));
  same("displayAnsiColor", &Record::displayAnsiColor, 1);
  same("displayLocalEcho", &Record::displayLocalEcho, 1);
  same("playBeeps", &Record::playBeeps, 1);
  same("parseHtml", &Record::parseHtml, 0);
  same("flushInput", &Record::flushInput, 0);
  same("useProxyServer", &Record::useProxyServer, 0);
  same("displayURLs", &Record::displayURLs, 1);
  same("splitInput", &Record::splitInput, 1);
  same("splitString", &Record::splitString, QStringLiteral(";"));
  same("hostName", &Record::hostName, settings::serverHost());
  same("port", &Record::port, 5000);
  same("proxyType", &Record::proxyType, 1);
  same("proxyHostName", &Record::proxyHostName, QString());
  same("proxyPortNumber", &Record::proxyPortNumber, QString());
  same("proxyUserName", &Record::proxyUserName, QString());
  same("proxyPassword", &Record::proxyPassword, QString());
  same("interfaceStyle", &Record::interfaceStyle, QStringLiteral("Plastique"));
}

void TestClientSettings::everyOptionHasItsKeyAndDefault() {
  QFETCH(QByteArray, key);
  QFETCH(QByteArray, exportKey);
  QFETCH(FieldMember, member);
  QFETCH(QVariant, expected);
  const SettingsField* const field = find(key);
  QVERIFY(field != nullptr);
  QCOMPARE(QByteArray(field->exportKey), exportKey);
  QVERIFY(field->member == member);
  QCOMPARE(field->defaultValue, expected);
}

void TestClientSettings::everyColourHasItsKeyPlaceAndDefault_data() {
  QTest::addColumn<bool>("bold");
  QTest::addColumn<int>("index");
  QTest::addColumn<QByteArray>("expected");
  const char* const names[] = {"black", "red",     "green", "yellow",
                               "blue",  "magenta", "cyan",  "white"};
  const char* const texts[2][8] = {
      {"#000000", "#660000", "#006600", "#5E610B", "#000099", "#990066", "#008080", "#BDBDBD"},
      {"#666666", "#FF0000", "#00FF00", "#FFFF00", "#2E2EFE", "#FF00FF", "#00FFFF", "#FFFFFF"}};
  for (const bool bold : {false, true})
    for (int i = 0; i < 8; ++i)
      QTest::addRow("%s%s", names[i], bold ? "B" : "") << bold << i << QByteArray(texts[bold][i]);
}

void TestClientSettings::everyColourHasItsKeyPlaceAndDefault() {
  QFETCH(bool, bold);
  QFETCH(int, index);
  QFETCH(QByteArray, expected);
  const SettingsField* const field = find(QTest::currentDataTag());
  QVERIFY(field != nullptr);
  QCOMPARE(field->kind(), FieldKind::Colour);
  QCOMPARE(QByteArray(field->exportKey), QByteArray(field->storeKey));

  ClientSettings record;
  const auto place = static_cast<std::size_t>(index);
  QCOMPARE((bold ? record.boldColour : record.normalColour)[place].text(), expected);

  ClientSettings changed;
  settings::assign(changed, *field, QStringLiteral("#123456"));
  (bold ? record.boldColour : record.normalColour)[place].assign("#123456");
  QCOMPARE(changed, record);  // that one colour and nothing else
}

void TestClientSettings::aNewRecordHoldsTheDefaults() {
  const ClientSettings record;
  QCOMPARE(record.outFont.family(), QStringLiteral("Courier"));
  QCOMPARE(record.outFont.pointSize(), 10);
  QCOMPARE(record.outFont.weight(), QFont::Normal);
  QVERIFY(!record.outFont.italic());
  QCOMPARE(record.inFont.family(), QStringLiteral("Courier"));
  QCOMPARE(record.inFont.pointSize(), 8);
  QCOMPARE(record.iconSize, QSize(48, 48));
  QVERIFY(record.displayAnsiColor);
  QVERIFY(record.displayLocalEcho);
  QVERIFY(record.playBeeps);
  QVERIFY(!record.parseHtml);
  QVERIFY(!record.flushInput);
  QVERIFY(!record.useProxyServer);
  QVERIFY(record.displayURLs);
  QVERIFY(record.splitInput);
  QCOMPARE(record.splitString, QStringLiteral(";"));
  QCOMPARE(record.hostName, settings::serverHost());
  QVERIFY(!record.hostName.isEmpty());
  QCOMPARE(record.port, 5000);
  QCOMPARE(record.proxyType, 1);
  QCOMPARE(record.proxyHostName, QString());
  QCOMPARE(record.proxyPortNumber, QString());
  QCOMPARE(record.proxyUserName, QString());
  QCOMPARE(record.proxyPassword, QString());
  QCOMPARE(record.interfaceStyle, QStringLiteral("Plastique"));
}

void TestClientSettings::theFieldsStandInTheOrderOfTheStore() {
  const QByteArrayList expected = {"outfont",
                                   "infont",
                                   "displayAnsiColor",
                                   "displayLocalEcho",
                                   "playBeeps",
                                   "parseHtml",
                                   "flushInput",
                                   "displayURLs",
                                   "splitInput",
                                   "splitString",
                                   "hostName",
                                   "port",
                                   "useProxyServer",
                                   "proxyHostName",
                                   "proxyPortNumber",
                                   "proxyUserName",
                                   "proxyPassword",
                                   "proxyType",
                                   "interfaceStyle",
                                   "iconSize",
                                   "black",
                                   "red",
                                   "green",
                                   "yellow",
                                   "blue",
                                   "magenta",
                                   "cyan",
                                   "white",
                                   "blackB",
                                   "redB",
                                   "greenB",
                                   "yellowB",
                                   "blueB",
                                   "magentaB",
                                   "cyanB",
                                   "whiteB"};
  QByteArrayList keys;
  for (const SettingsField& field : fields())
    keys << field.storeKey;
  QCOMPARE(keys, expected);
}

void TestClientSettings::noFieldIsNamedTwice() {
  std::set<std::string> store;
  std::set<std::string> exported;
  for (const SettingsField& field : fields()) {
    store.insert(field.storeKey);
    exported.insert(field.exportKey);
  }
  QCOMPARE(store.size(), fields().size());
  QCOMPARE(exported.size(), fields().size());
}

void TestClientSettings::everyRowHasAMemberOfItsOwn() {
  const ClientSettings defaults;
  for (const SettingsField& changed : fields()) {
    ClientSettings record;
    settings::assign(record, changed, changedValue(changed, 0));
    for (const SettingsField& field : fields()) {
      const bool differs =
          settings::storedValue(record, field) != settings::storedValue(defaults, field);
      QVERIFY2(differs == (&field == &changed), changed.storeKey);
    }
  }
}

void TestClientSettings::theExportHasEveryFieldOnce() {
  // Which stands where is told by the lines of an export (tst_settingsfile).
  std::set<const SettingsField*> exported;
  for (const SettingsField* field : settings::fieldsInExportOrder())
    QVERIFY2(exported.insert(field).second, field->storeKey);
  QCOMPARE(exported.size(), fields().size());
}

void TestClientSettings::aDefaultIsInTheStoredForm() {
  const ClientSettings record;
  for (const SettingsField& field : fields()) {
    const QVariant stored = settings::storedValue(record, field);
    QVERIFY2(stored.typeId() == field.defaultValue.typeId(), field.storeKey);
    if (field.kind() != FieldKind::Font)  // whose text depends on the toolkit's release
      QVERIFY2(stored == field.defaultValue, field.storeKey);
  }
}

void TestClientSettings::aFieldGoesOutAsItCameIn_data() {
  QTest::addColumn<QByteArray>("key");
  QTest::addColumn<QVariant>("in");
  QTest::addColumn<QVariant>("out");
  const auto row = [](const char* name, const char* key, const QVariant& in, const QVariant& out) {
    QTest::newRow(name) << QByteArray(key) << in << out;
  };
  row("the flag 1 is on", "parseHtml", 1, 1);
  row("the flag 0 is off", "displayURLs", 0, 0);
  row("the flag \"7\" is on", "parseHtml", QStringLiteral("7"), 1);
  row("the flag -1 is on", "parseHtml", -1, 1);
  row("the flag \"abc\" is off", "displayURLs", QStringLiteral("abc"), 0);
  row("the flag \"true\" is no integer and off", "displayURLs", QStringLiteral("true"), 0);
  row("an empty flag is off", "displayURLs", QString(), 0);
  row("a flag that holds a size is off", "displayURLs", QSize(1, 1), 0);
  row("a port is kept whole", "port", 70000, 70000);
  row("a negative port is kept", "port", -1, -1);
  row("a port that is no number is 0", "port", QStringLiteral("telnet"), 0);
  const QString beyond = QStringLiteral("99999999999");
  row("a port beyond an int is what the toolkit makes of it", "port", beyond,
      QVariant(beyond).toInt());
  row("a proxy type the toolkit does not know is kept", "proxyType", 99, 99);
  row("a proxy port text is kept", "proxyPortNumber", QStringLiteral("abc"), QStringLiteral("abc"));
  row("an empty proxy port text is kept", "proxyPortNumber", QString(), QString());
  row("a list is no text", "hostName", QStringList{QStringLiteral("a"), QStringLiteral("b")},
      QString());
  row("an icon size is kept", "iconSize", QSize(0, 99999), QSize(0, 99999));
  row("a text is no size", "iconSize", QStringLiteral("48x48"), QSize());
  row("a colour is cut to seven characters", "cyanB", QStringLiteral("#12345678"),
      QStringLiteral("#123456"));
  row("a colour need not look like one", "cyanB", QStringLiteral("red"), QStringLiteral("red"));
  row("an empty colour is kept", "cyanB", QString(), QString());
  row("a colour keeps Latin-1 and shows ? for the rest", "black", QStringLiteral("\u00e9\u20ac"),
      QStringLiteral("\u00e9?"));
  row("a font that is too large comes out at the bound", "outfont",
      QStringLiteral("Courier,100000,-1,5,50,0,0,0,0,0"),
      QVariant(QFont(QStringLiteral("Courier"), 200).toString()));
  row("an unreadable font is the default font", "outfont", QStringLiteral("a,b,c"),
      QVariant(QFont().toString()));
}

void TestClientSettings::aFieldGoesOutAsItCameIn() {
  QFETCH(QByteArray, key);
  QFETCH(QVariant, in);
  QFETCH(QVariant, out);
  if (key.endsWith("font") && out == QVariant(QFont().toString()))
    QTest::ignoreMessage(QtWarningMsg, "QFont::fromString: Invalid description 'a,b,c'");
  ClientSettings record;
  settings::assign(record, *find(key), in);
  QCOMPARE(settings::storedValue(record, *find(key)), out);
}

void TestClientSettings::colourTextKeepsSevenCharacters_data() {
  QTest::addColumn<QByteArray>("in");
  QTest::addColumn<QByteArray>("out");
  QTest::newRow("nothing") << QByteArray() << QByteArray();
  QTest::newRow("seven characters stay") << QByteArray("#abcdef") << QByteArray("#abcdef");
  QTest::newRow("eight are cut") << QByteArray("#abcdef0") << QByteArray("#abcdef");
  QTest::newRow("a million are cut") << QByteArray(1000000, 'x') << QByteArray("xxxxxxx");
  QTest::newRow("a zero ends the text") << QByteArray("#a\0bcd", 6) << QByteArray("#a");
  QTest::newRow("a zero past the end is never seen")
      << QByteArray("#abcdef\0", 8) << QByteArray("#abcdef");
  QTest::newRow("bytes above 127 stay") << QByteArray("\xff\x80") << QByteArray("\xff\x80");
}

void TestClientSettings::colourTextKeepsSevenCharacters() {
  QFETCH(QByteArray, in);
  QFETCH(QByteArray, out);
  const ColourText text{in};
  QCOMPARE(text.text(), out);
  QCOMPARE(qstrlen(text.data()), static_cast<size_t>(out.size()));
}

void TestClientSettings::equalColourTextsAreEqualWhateverStoodThereBefore() {
  ColourText text{"#abcdef"};
  text.assign("#a");
  QVERIFY(text == ColourText{"#a"});
  QVERIFY(text != ColourText{"#b"});
}

KELMORA_VALUE_TEST_MAIN(TestClientSettings)
#include "tst_clientsettings.moc"

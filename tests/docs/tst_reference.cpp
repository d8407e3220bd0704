#include <QGuiApplication>
#include <QMetaEnum>
#include <QRegularExpression>
#include <algorithm>

#include "Markdown.h"
#include "Tree.h"
#include "automation/core/AutomationFiles.h"
#include "automation/core/BlockFile.h"
#include "automation/core/KeyNames.h"
#include "automation/core/TriggerPattern.h"
#include "script/Arithmetic.h"
#include "script/CommandTable.h"
#include "settings/Effects.h"
#include "settings/ServerHosts.h"
#include "settings/SettingsFields.h"
#include "settings/SettingsFile.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"

using namespace kelmora;

/// The tables and examples of the reference that tell of rules and files.
class TestReference : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void commands();
  void scriptMessages();
  void arithmetic();
  void triggers();
  void keyNames();
  void automationFiles_data();
  void automationFiles();
  void settings();
  void effects();
  void exportedFile();
};

namespace {

QString formOf(const script::CommandRow& command) {
  switch (command.form) {
    case script::ArgumentForm::None:
      return QStringLiteral("none");
    case script::ArgumentForm::One:
      return QStringLiteral("one");
    case script::ArgumentForm::OneUntrimmed:
      return QStringLiteral("one, as it stands");
    case script::ArgumentForm::Two:
      return QStringLiteral("two");
    case script::ArgumentForm::TextAndMaybeColour:
      break;
  }
  return QStringLiteral("text and maybe a colour");
}

QString substitutedOf(const script::CommandRow& command) {
  switch (command.substituted) {
    case script::Substituted::Nothing:
      return QStringLiteral("none");
    case script::Substituted::First:
      return QStringLiteral("the first");
    case script::Substituted::Second:
      return QStringLiteral("the second");
    case script::Substituted::Both:
      break;
  }
  return QStringLiteral("both");
}

}  // namespace

void TestReference::commands() {
  QList<QStringList> inCode;
  for (const script::CommandRow& command : script::commandRows())
    inCode << QStringList{command.word, formOf(command), substitutedOf(command),
                          script::errorOf(command)};
  QList<QStringList> inPage;
  for (const QStringList& row : page("scripting.md").checkedTable("## Commands"))
    inPage << QStringList{codeIn(row.at(0)), row.at(1), row.at(2), codeIn(row.at(4))};
  QCOMPARE(inPage, inCode);
}

void TestReference::scriptMessages() {
  const auto rows = page("scripting.md").checkedTable("## Messages");
  QVERIFY(!rows.isEmpty());
  QMap<QString, QString> inCode;
  // Commands without their arguments have their errors in a table of their own.
  static const QRegularExpression message(
      QStringLiteral("(printError|printInfo|tell)\\(\\s*tr\\(\"([^\"%]+)"));
  for (const QString& path : filesIn("src/script", "*.cpp"))
    for (auto match = message.globalMatch(textOf(path)); match.hasNext();) {
      const auto found = match.next();
      inCode[found.captured(2)] = found.captured(1) == "printInfo" ? "information" : "error";
    }
  QMap<QString, QString> inPage;
  for (const QStringList& row : rows)
    inPage[codeIn(row.at(0))] = row.at(1);
  QCOMPARE(inPage, inCode);
}

void TestReference::arithmetic() {
  const QMap<QString, script::Operation> operations{{"/add", script::Operation::Add},
                                                    {"/subtract", script::Operation::Subtract},
                                                    {"/multiply", script::Operation::Multiply},
                                                    {"/divide", script::Operation::Divide}};
  const auto rows = page("scripting.md").checkedTable("## Arithmetic");
  QVERIFY(!rows.isEmpty());
  for (const QStringList& row : rows) {
    const QString value = codeIn(row.at(0));
    QVERIFY2(operations.contains(codeIn(row.at(1))), qPrintable(row.join('|')));
    const auto result =
        script::calculate(operations.value(codeIn(row.at(1))), value, codeIn(row.at(2)));
    QCOMPARE(result.value_or(value), codeIn(row.at(3)));
  }
}

void TestReference::triggers() {
  const auto rows = page("automation.md").checkedTable("## Triggers");
  QVERIFY(!rows.isEmpty());
  for (const QStringList& row : rows) {
    const automation::TriggerPattern pattern(codeIn(row.at(0)));
    const auto words = pattern.matches(automation::TriggerLine(codeIn(row.at(1)).toUtf8()));
    QStringList shown;
    for (const QString& word : words.value_or(QStringList()))
      shown << '`' + word + '`';
    const QString happens = !words            ? QStringLiteral("nothing")
                            : shown.isEmpty() ? QStringLiteral("fires")
                                              : "fires: " + shown.join(", ");
    QCOMPARE(row.at(2), happens);
  }
}

void TestReference::keyNames() {
  QList<std::pair<int, QString>> inPage;
  for (const QStringList& row : page("automation.md").checkedTable("## Key names"))
    inPage << std::pair(row.at(1).toInt(nullptr, 0), codeIn(row.at(0)));
  std::sort(inPage.begin(), inPage.end());
  QList<std::pair<int, QString>> inCode;
  const auto keys = QMetaEnum::fromType<Qt::Key>();
  for (int i = 0; i < keys.keyCount(); ++i) {
    const std::pair key(keys.value(i), automation::keyCodeToName(keys.value(i)));
    if (key.second.size() > 1 && !inCode.contains(key))
      inCode << key;
  }
  std::sort(inCode.begin(), inCode.end());
  QCOMPARE(inPage, inCode);
}

void TestReference::automationFiles_data() {
  QTest::addColumn<QString>("name");
  for (const char* name : {"macros.txt", "triggers.txt", "aliases.txt", "variables.txt"})
    QTest::newRow(name) << name;
}

// Read and written again an example is the same, byte for byte.
void TestReference::automationFiles() {
  QFETCH(const QString, name);
  const QByteArray example = page("files.md").block(name).toLatin1();
  QVERIFY(!example.isEmpty());
  writeFile(name, example);
  automation::AutomationFiles files;
  if (name == "macros.txt") {
    automation::MacroTable macros;
    QVERIFY(files.loadMacros(macros));
    QByteArray written;
    for (const automation::MacroEntry& macro : macros.entries())
      automation::blockfile::append(written, automation::blockfile::macros,
                                    automation::keyCodeToName(macro.key), macro.commands);
    QCOMPARE(written, example);
    return;
  }
  if (name == "triggers.txt") {
    automation::TriggerTable table;
    QVERIFY(files.loadTriggers(table));
    QFile::remove(name);
    QVERIFY(files.writeTriggers(table));
  } else if (name == "aliases.txt") {
    automation::AliasTable table;
    QVERIFY(files.loadAliases(table));
    QFile::remove(name);
    QVERIFY(files.writeAliases(table));
  } else {
    QMap<QString, QString> table;
    QVERIFY(files.loadVariables(table));
    QFile::remove(name);
    QVERIFY(files.writeVariables(table));
  }
  QCOMPARE(contentsOf(name), example);
}

namespace {

QString kindOf(const settings::SettingsField& field) {
  switch (field.kind()) {
    case settings::FieldKind::Font:
      return QStringLiteral("font");
    case settings::FieldKind::Size:
      return QStringLiteral("size");
    case settings::FieldKind::Flag:
      return QStringLiteral("flag");
    case settings::FieldKind::Integer:
      return QStringLiteral("integer");
    case settings::FieldKind::Colour:
      return QStringLiteral("colour");
    case settings::FieldKind::Text:
      break;
  }
  switch (field.exportForm) {
    case settings::ExportForm::NullWhenEmpty:
      return QStringLiteral("text, `(null)` when empty");
    case settings::ExportForm::Number:
      return QStringLiteral("text, exported as a number");
    case settings::ExportForm::Plain:
      break;
  }
  return QStringLiteral("text");
}

QString defaultOf(const settings::SettingsField& field) {
  if (field.storeKey == QLatin1String("hostName"))
    return QStringLiteral("the build's `KELMORA_SERVER_HOST`");
  if (field.kind() == settings::FieldKind::Size) {
    const QSize size = field.defaultValue.toSize();
    return QStringLiteral("%1 by %2").arg(size.width()).arg(size.height());
  }
  const QString text = field.defaultValue.toString();
  return text.isEmpty() ? QStringLiteral("empty") : '`' + text + '`';
}

}  // namespace

void TestReference::settings() {
  QList<QStringList> inCode;
  for (const settings::SettingsField& field : settings::fields())
    inCode << QStringList{'`' + QString::fromLatin1(field.storeKey) + '`',
                          '`' + QString::fromLatin1(field.exportKey) + '`', kindOf(field),
                          defaultOf(field)};
  QList<QStringList> inPage;
  for (const QStringList& row : page("files.md").checkedTable("## The settings store"))
    inPage << row.first(4);
  QCOMPARE(inPage, inCode);
}

namespace {

QString nameOf(settings::Effect effect) {
  switch (effect) {
    case settings::Effect::UsedProxy:
      return QStringLiteral("the proxy, if one is used");
    case settings::Effect::ProxyOrNone:
      return QStringLiteral("the proxy, or none");
    case settings::Effect::Colours:
      return QStringLiteral("the colours");
    case settings::Effect::BoldOff:
      return QStringLiteral("bold ends");
    case settings::Effect::WidgetStyle:
      return QStringLiteral("the style");
    case settings::Effect::IconSize:
      return QStringLiteral("the size of the icons");
    case settings::Effect::InputFont:
      return QStringLiteral("the font of the input bar");
    case settings::Effect::OutputFont:
      return QStringLiteral("the font of the pane");
    case settings::Effect::Save:
      break;
  }
  return QStringLiteral("a save");
}

}  // namespace

void TestReference::effects() {
  using enum settings::Occasion;
  const std::pair<settings::Occasion, const char*> occasions[] = {
      {Loaded, "start: the options have been read"},
      {FilesLoaded, "start: the automation files have been read"},
      {WidgetsMade, "start: the widgets have been made"},
      {Imported, "an import that succeeded"},
      {GeneralApplied, "Apply in the general settings"},
      {ProxyApplied, "Apply in the proxy settings"},
      {InterfaceApplied, "Apply in the interface settings"},
  };
  QList<QStringList> inCode;
  for (const auto& [occasion, words] : occasions) {
    QStringList names;
    for (const settings::Effect effect : settings::effectsOf(occasion))
      names << nameOf(effect);
    inCode << QStringList{words, names.join("; ")};
  }
  QCOMPARE(page("files.md").checkedTable("### When an option takes effect"), inCode);
}

void TestReference::exportedFile() {
  QVERIFY(settings::exportSettings(settings::ClientSettings(), "default.settings"));
  QString expected = page("files.md").block("kelmora.settings");
  expected.replace("\nhostName localhost\n", "\nhostName " + settings::serverHost() + '\n');
  // Each release of the toolkit may write a font in another form.
  const settings::ClientSettings record;
  for (const auto& [key, font] : {std::pair("outFont", record.outFont), {"inFont", record.inFont}})
    expected.replace(QRegularExpression(QStringLiteral("\n%1 .*").arg(key)),
                     QStringLiteral("\n%1 %2").arg(key, font.toString()));
  QCOMPARE(textOf("default.settings"), expected);
}

KELMORA_VALUE_TEST_MAIN(TestReference)
#include "tst_reference.moc"

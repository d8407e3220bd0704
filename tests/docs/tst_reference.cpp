#include <QAction>
#include <QApplication>
#include <QDirIterator>
#include <QMetaEnum>
#include <QMetaMethod>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSet>
#include <QToolBar>
#include <algorithm>

#include "Markdown.h"
#include "app/MainWidget.h"
#include "automation/core/AutomationFiles.h"
#include "automation/core/BlockFile.h"
#include "automation/core/KeyNames.h"
#include "automation/core/TriggerPattern.h"
#include "automation/editors/AliasWidget.h"
#include "automation/editors/KeyPressInput.h"
#include "automation/editors/KeyPressWidget.h"
#include "automation/editors/MacroWidget.h"
#include "automation/editors/TriggerWidget.h"
#include "dialogs/ConfigureWidget.h"
#include "dialogs/HelpWidget.h"
#include "dialogs/ProxyWidget.h"
#include "dialogs/StyleWidget.h"
#include "script/ActionTimer.h"
#include "script/Arithmetic.h"
#include "script/CommandTable.h"
#include "settings/ServerHosts.h"
#include "settings/SettingsFields.h"
#include "settings/SettingsFile.h"
#include "support/FileText.h"
#include "support/OwnStore.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;

namespace {

QString inTree(const QString& path) {
  return QStringLiteral(KELMORA_TREE) + '/' + path;
}

Markdown page(const QString& name) {
  return Markdown(inTree("docs/reference/" + name));
}

/// All files below a folder of the tree whose names match.
QStringList filesIn(const QString& folder, const QString& names) {
  QStringList paths;
  for (QDirIterator files(inTree(folder), {names}, QDir::Files, QDirIterator::Subdirectories);
       files.hasNext();)
    paths << files.next();
  paths.sort();
  return paths;
}

QString textOf(const QString& path) {
  return QString::fromUtf8(contentOf(path));
}

QStringList ownMethods(const QMetaObject& meta) {
  QStringList methods;
  for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
    methods << QString::fromLatin1(meta.method(i).methodSignature());
  return methods;
}

}  // namespace

/// The tables and examples of the reference against the program, and its links
/// and names of tests against the tree.
class TestReference : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void commands();
  void scriptMessages();
  void arithmetic();
  void triggers();
  void keyNames();
  void automationFiles_data();
  void automationFiles();
  void settings();
  void exportedFile();
  void connectionErrors();
  void slotsOfTheWindow();
  void classes();
  void toolbar();
  void bars();
  void logCategories();
  void quirksAreHeldByTestsThatExist();
  void everyLinkLeadsSomewhere();
};

void TestReference::init() {
  // A page that was moved would leave nothing to compare.
  QVERIFY(!Markdown(inTree("docs/reference.md")).lines().isEmpty());
}

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
    inCode << QStringList{command.word, formOf(command), substitutedOf(command), command.error};
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
      QStringLiteral("(printError|printInfo|tell)\\(\\s*QStringLiteral\\(\"([^\"%]+)"));
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
  QCOMPARE(contentOf(name), example);
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

void TestReference::connectionErrors() {
  const auto rows = page("connection.md").checkedTable("## States");
  QVERIFY(!rows.isEmpty());
  const auto errors = QMetaEnum::fromType<QAbstractSocket::SocketError>();
  for (const QStringList& row : rows) {
    const OwnStore store;
    MainWidget window(store.place());
    const QByteArray name = codeIn(row.at(0)).toLatin1();
    const int error =
        name.isEmpty() ? QAbstractSocket::NetworkError : errors.keyToValue(name.constData());
    QVERIFY2(name.isEmpty() || error >= 0, qPrintable(row.join('|')));
    window.displaySocketError(static_cast<QAbstractSocket::SocketError>(error));
    const QString line = codeIn(row.at(1)).replace("NUMBER", QString::number(error));
    QCOMPARE(settled(*window.findChild<OutputWidget*>()).toPlainText(), line);
  }
}

void TestReference::slotsOfTheWindow() {
  QStringList inPage;
  for (const QStringList& row : page("window.md").checkedTable("## Slots of MainWidget")) {
    QCOMPARE(row.at(0).toInt(), int(inPage.size()));
    inPage << codeIn(row.at(1));
  }
  QCOMPARE(inPage, ownMethods(MainWidget::staticMetaObject));
}

void TestReference::classes() {
  QMap<QString, const QMetaObject*> inCode;
  for (const QMetaObject* meta :
       {&MainWidget::staticMetaObject, &OutputWidget::staticMetaObject,
        &InputWidget::staticMetaObject, &ConfigureWidget::staticMetaObject,
        &ProxyWidget::staticMetaObject, &StyleWidget::staticMetaObject,
        &HelpWidget::staticMetaObject, &MacroWidget::staticMetaObject,
        &TriggerWidget::staticMetaObject, &AliasWidget::staticMetaObject,
        &KeyPressWidget::staticMetaObject, &KeyPressInput::staticMetaObject,
        &ActionTimer::staticMetaObject})
    inCode.insert(meta->className(), meta);

  // All there are: a class with slots says Q_OBJECT, and one that shows outside
  // is in no namespace.
  QSet<QString> declared;
  static const QRegularExpression declaration(QStringLiteral("^class (\\w+)[^;{]*\\{\\s*Q_OBJECT"),
                                              QRegularExpression::MultilineOption);
  static const QRegularExpression endOfNamespace(QStringLiteral("// namespace [\\w:]+\\s*$"));
  for (const QString& path : filesIn("src", "*.h")) {
    const QString text = textOf(path);
    const auto match = declaration.match(text);
    if (match.hasMatch() && !text.contains(endOfNamespace))
      declared << match.captured(1);
  }
  const QStringList names = inCode.keys();
  QCOMPARE(QSet<QString>(names.begin(), names.end()), declared);

  QStringList inPage;
  for (const QStringList& row : page("window.md").checkedTable("## Classes")) {
    const QString name = codeIn(row.at(0));
    inPage << name;
    QVERIFY2(inCode.contains(name), qPrintable(name));
    const QMetaObject& meta = *inCode.value(name);
    QCOMPARE(codeIn(row.at(1)), QString::fromLatin1(meta.superClass()->className()));
    if (name != "MainWidget")
      QCOMPARE(codesIn(row.at(2)), ownMethods(meta));
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
      QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
  }
  inPage.sort();
  QCOMPARE(inPage, names);
}

void TestReference::toolbar() {
  const OwnStore store;
  MainWidget window(store.place());
  const auto rows = page("window.md").checkedTable("## Toolbar");
  QList<QStringList> inCode;
  for (const QAction* action : window.findChild<QToolBar*>()->actions()) {
    if (action->isSeparator()) {
      inCode.last().last() = "line";
      continue;
    }
    QCOMPARE(action->statusTip(), action->text());
    inCode << QStringList{'`' + action->text() + '`', '`' + action->shortcut().toString() + '`',
                          action->isEnabled() ? "enabled" : "disabled", ""};
    const QStringList row = rows.value(inCode.size() - 1);
    const QIcon icon(QStringLiteral(":/icons/%1.png").arg(codeIn(row.value(0))));
    QCOMPARE(action->icon().pixmap(48).toImage(), icon.pixmap(48).toImage());
    const QByteArray slot = codeIn(row.value(3)).toLatin1();
    QVERIFY2(MainWidget::staticMetaObject.indexOfSlot(slot.constData()) >= 0, slot.constData());
  }
  QList<QStringList> inPage;
  for (const QStringList& row : rows)
    inPage << QStringList{row.at(1), row.at(2), row.at(4), row.at(5)};
  QCOMPARE(inPage, inCode);
}

void TestReference::bars() {
  const OwnStore store;
  MainWidget window(store.place());
  QList<QStringList> inCode;
  for (const QProgressBar* bar : window.findChild<QToolBar*>()->findChildren<QProgressBar*>()) {
    QStringList row{bar->accessibleName().toLower(), '`' + bar->objectName() + '`'};
    for (const int length : {bar->x(), bar->y(), bar->width(), bar->height()})
      row << QString::number(length);
    inCode << row + QStringList{'`' + bar->styleSheet() + '`'};
  }
  QCOMPARE(page("window.md").checkedTable("## Layout"), inCode);
}

void TestReference::logCategories() {
  QStringList inPage;
  for (const QStringList& row : Markdown(inTree("docs/reference.md")).checkedTable("## The log"))
    inPage << codeIn(row.at(0));
  QStringList inCode;
  static const QRegularExpression category(
      QStringLiteral("Q_LOGGING_CATEGORY\\(\\w+,\\s*\"([^\"]+)\""));
  for (const QString& path : filesIn("src", "*.cpp"))
    for (auto match = category.globalMatch(textOf(path)); match.hasNext();)
      inCode << match.next().captured(1);
  inCode.sort();
  QCOMPARE(inPage, inCode);
}

void TestReference::quirksAreHeldByTestsThatExist() {
  const Markdown quirks = page("quirks.md");
  qsizetype count = 0;
  QMap<QString, QString> sources;
  for (const QString& path : filesIn("tests", "tst_*.cpp"))
    sources[QFileInfo(path).completeBaseName()] = path;
  for (const QString& line : quirks.lines()) {
    const QStringList cells = line.split('|');
    const QStringList test = codeIn(cells.value(2)).split("::");
    if (test.size() != 2)
      continue;
    ++count;
    const QString path = sources.value(test.at(0));
    QVERIFY2(!path.isEmpty(), qPrintable(line));
    const QString source = textOf(path);
    QVERIFY2(source.contains("::" + test.at(1) + "() {"), qPrintable(line));
    const QString row = codeIn(cells.value(3));
    QVERIFY2(row.isEmpty() || source.contains('"' + row + '"'), qPrintable(line));
    // A file that is in no list is not run.
    const QString list = textOf(QFileInfo(path).path() + "/CMakeLists.txt");
    QVERIFY2(list.contains(QRegularExpression("\\b" + test.at(0) + "\\b")), qPrintable(line));
  }
  QVERIFY2(count > 50, qPrintable(QString::number(count)));
}

void TestReference::everyLinkLeadsSomewhere() {
  QStringList pages = filesIn("docs", "*.md") + filesIn(".github", "*.md");
  for (const QFileInfo& file : QDir(inTree("")).entryInfoList({"*.md"}, QDir::Files))
    pages << file.filePath();
  QStringList lost;
  for (const QString& path : pages) {
    for (const QString& link : Markdown(path).localLinks()) {
      const QString file = link.section('#', 0, 0);
      const QString target = file.isEmpty() ? path : QFileInfo(path).path() + '/' + file;
      const QString anchor = link.section('#', 1);
      if (!QFileInfo::exists(target) ||
          (!anchor.isEmpty() && !Markdown(target).anchors().contains(anchor)))
        lost << QFileInfo(path).fileName() + ": " + link;
    }
  }
  QCOMPARE(lost.join('\n'), QString());
}

KELMORA_GUI_TEST_MAIN(TestReference)
#include "tst_reference.moc"

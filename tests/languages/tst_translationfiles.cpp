#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QSet>

#include "TranslationFile.h"
#include "app/Translations.h"
#include "support/ScratchMain.h"

using namespace kelmora;

/// The translations in the tree are whole, and fit the texts in the source.
class TestTranslationFiles : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void isWhole_data() { everyFile(); }
  void isWhole();
  void hasTheTextsOfTheSource_data() { everyFile(); }
  void hasTheTextsOfTheSource();
  void keepsTheForm_data() { everyFile(); }
  void keepsTheForm();
  void aMnemonicStandsOnceInAWindow_data() { everyFile(); }
  void aMnemonicStandsOnceInAWindow();
  void differencesOfFormAreFound_data();
  void differencesOfFormAreFound();
  void everyFileIsCompiledIn_data() { everyFile(); }
  void everyFileIsCompiledIn();
  void theLanguageIsTheFirstWanted_data();
  void theLanguageIsTheFirstWanted();

 private:
  static void everyFile() {
    QTest::addColumn<QString>("path");
    QVERIFY(!translationFiles().isEmpty());
    for (const QString& path : translationFiles())
      QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path;
  }
};

void TestTranslationFiles::isWhole() {
  QFETCH(const QString, path);
  const QList<Translated> texts = textsIn(path);
  QVERIFY(!texts.isEmpty());
  QStringList open;
  for (const Translated& text : texts)
    if (!text.type.isEmpty() || text.translation.isEmpty())
      open << text.source;
  QCOMPARE(open.join(u'\n'), QString());
}

void TestTranslationFiles::hasTheTextsOfTheSource() {
  QFETCH(const QString, path);
  if (qstrlen(KELMORA_LUPDATE) == 0)
    QSKIP("lupdate is not installed");
  const auto sourcesOf = [](const QString& file) {
    QStringList sources;
    for (const Translated& text : textsIn(file))
      sources << text.context + QStringLiteral(" | ") + text.source;
    sources.sort();
    return sources;
  };
  QFile::remove("fresh.ts");
  QProcess lupdate;
  lupdate.start(KELMORA_LUPDATE, {KELMORA_SOURCES, "-ts", QDir::current().filePath("fresh.ts")});
  QVERIFY(lupdate.waitForFinished(60000));
  QCOMPARE(lupdate.exitCode(), 0);
  // It warns where a text would be looked for under another class than it is found.
  const QByteArray warnings = lupdate.readAllStandardError();
  QVERIFY2(!warnings.contains("Q_OBJECT"), warnings.constData());
  const QStringList fresh = sourcesOf("fresh.ts");
  const QStringList committed = sourcesOf(path);
  QVERIFY(!fresh.isEmpty());
  const auto without = [](const QStringList& all, const QStringList& those) {
    const QSet<QString> known(those.begin(), those.end());
    QStringList rest;
    for (const QString& text : all)
      if (!known.contains(text))
        rest << text;
    return rest.join(u'\n');
  };
  // The target update_translations mends both.
  QCOMPARE("missing: " + without(fresh, committed), QString("missing: "));
  QCOMPARE("obsolete: " + without(committed, fresh), QString("obsolete: "));
  QCOMPARE(committed.size(), fresh.size());
}

void TestTranslationFiles::keepsTheForm() {
  QFETCH(const QString, path);
  QStringList different;
  for (const Translated& text : textsIn(path))
    for (const QString& difference : differencesOfForm(text.source, text.translation))
      different << QStringLiteral("%1 of \"%2\"").arg(difference, text.translation);
  QCOMPARE(different.join(u'\n'), QString());
}

void TestTranslationFiles::aMnemonicStandsOnceInAWindow() {
  QFETCH(const QString, path);
  QSet<QString> taken;
  for (const Translated& text : textsIn(path)) {
    const qsizetype place = text.translation.indexOf(u'&');
    if (place < 0)
      continue;
    const QString mnemonic = text.context + text.translation.mid(place, 2).toLower();
    QVERIFY2(!taken.contains(mnemonic), qPrintable(text.translation));
    taken << mnemonic;
  }
}

void TestTranslationFiles::differencesOfFormAreFound_data() {
  QTest::addColumn<QString>("source");
  QTest::addColumn<QString>("translation");
  QTest::addColumn<QStringList>("differences");
  const auto row = [](const char* name, const QString& source, const QString& translation,
                      const QStringList& differences) {
    QTest::newRow(name) << source << translation << differences;
  };
  row("none", "%1 on port %2...", "Port %2: %1 ...", {});
  row("a placeholder is missing", "No %1 in %2", "Kein %1", {"placeholders"});
  row("a placeholder is another", "No %1", "Kein %2", {"placeholders"});
  row("a line is missing", "a\nb", "a b", {"line breaks"});
  row("the last line break is missing", "a\n", "a", {"line breaks", "blanks at the ends"});
  row("a blank at the end", "a", "a ", {"blanks at the ends"});
  row("a mnemonic is missing", "&Apply", "Anwenden", {"mnemonics"});
  row("another pattern of files", "Pages (*.htm)", "Seiten (*.html)", {"patterns of files"});
  row("another file", "in macros.txt", "in makros.txt", {"names of files"});
  row("another option", "  --help", "  --hilfe", {"options"});
  row("another command", "/pause ends", "/warte endet", {"commands"});
  row("another catch", "with {*} for", "mit * f\u00fcr", {"catches"});
  row("another name", "Kelmora help", "Hilfe", {"the program's name"});
  row("the colon is missing", "Server:", "Server", {"the sign at the end"});
  row("a full stop too much", "Done", "Fertig.", {"the full stop at the end"});
  row("an ellipsis is missing", "Wait...", "Warten", {"the full stop at the end", "ellipses"});
  row("no angle brackets", "<Invalid>", "Ung\u00fcltig", {"angle brackets"});
  row("another key behind the text", "Play (Ctrl+J)", "Spielen (Strg+S)",
      {"the key behind the text"});
  row("quotation marks of its own", "the key", "die \u201eTaste\u201c", {"quotation marks"});
  row("another key", "Ctrl+J", "Ctrl+S", {"the key"});
  row("a name that its file cannot hold", "<Enter it>", "<\u0416>", {"characters outside Latin-1"});
}

void TestTranslationFiles::differencesOfFormAreFound() {
  QFETCH(const QString, source);
  QFETCH(const QString, translation);
  QFETCH(const QStringList, differences);
  QCOMPARE(differencesOfForm(source, translation), differences);
}

void TestTranslationFiles::everyFileIsCompiledIn() {
  if (!KELMORA_SPEAKS_GERMAN)
    QSKIP("built without lrelease");
  QFETCH(const QString, path);
  const QString name = QFileInfo(path).completeBaseName();
  QVERIFY(QFile::exists(QStringLiteral(":/translations/%1.qm").arg(name)));
  QCOMPARE("kelmora_" + app::languageFor({name.section('_', 1)}), name);
}

void TestTranslationFiles::theLanguageIsTheFirstWanted_data() {
  QTest::addColumn<QStringList>("wanted");
  QTest::addColumn<QString>("language");
  QTest::newRow("none") << QStringList() << QString();
  QTest::newRow("German") << QStringList{"de"} << "de";
  QTest::newRow("German of a country") << QStringList{"de-AT"} << "de";
  QTest::newRow("German in its script") << QStringList{"de-Latn-DE", "de-DE", "de"} << "de";
  QTest::newRow("German behind one that is not there") << QStringList{"tlh", "de"} << "de";
  QTest::newRow("English before German") << QStringList{"en", "de"} << QString();
  QTest::newRow("English of a country") << QStringList{"en-GB", "de"} << QString();
  QTest::newRow("no language") << QStringList{"C"} << QString();
  QTest::newRow("none that is there") << QStringList{"tlh"} << QString();
  QTest::newRow("the way out of the folder") << QStringList{"../x", "", "_", "-"} << QString();
}

void TestTranslationFiles::theLanguageIsTheFirstWanted() {
  if (!KELMORA_SPEAKS_GERMAN)
    QSKIP("built without lrelease");
  QFETCH(const QStringList, wanted);
  QFETCH(const QString, language);
  QCOMPARE(app::languageFor(wanted), language);
}

KELMORA_VALUE_TEST_MAIN(TestTranslationFiles)
#include "tst_translationfiles.moc"

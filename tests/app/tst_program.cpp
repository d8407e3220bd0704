#include <QDir>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QProcess>
#include <QSettings>
#include <QVersionNumber>

#include "support/FileText.h"
#include "support/ScratchMain.h"

/// The program as it is shipped, started as a player starts it. A plugin of
/// the toolkit looks on from inside.
class TestProgram : public QObject {
  Q_OBJECT

 public:
  using Variables = QList<std::pair<QString, QString>>;

 private Q_SLOTS:
  void init();
  void startsBehindItsSplash();
  void theEventLoopsExitCodeIsTheProgramsOwn_data();
  void theEventLoopsExitCodeIsTheProgramsOwn();
  void argumentsThatAreNoOptionsOfOursChangeNothing_data();
  void argumentsThatAreNoOptionsOfOursChangeNothing();
  void speaksTheLanguageOfTheDesktop_data();
  void speaksTheLanguageOfTheDesktop();
  void answersWithoutADisplay_data();
  void answersWithoutADisplay();
  void closingTheWindowSavesEveryOption();

 private:
  /// The lines of the report; ends the program that way.
  QStringList run(const QString& end, const QStringList& arguments = {},
                  const Variables& variables = {{"LANG", "C"}}) {
    QProcess program;
    QProcessEnvironment environment = environmentWith(variables);
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_QPA_GENERIC_PLUGINS", "startwatch");
    environment.insert("QT_PLUGIN_PATH", KELMORA_START_WATCH);
    environment.insert("KELMORA_START_REPORT", QDir::current().filePath("report.txt"));
    environment.insert("KELMORA_START_END", end);
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(KELMORA_PROGRAM, arguments);
    const bool ended = program.waitForFinished(30000);
    exitCode_ = ended && program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    QStringList lines = QString::fromUtf8(contentsOf("report.txt")).split('\n', Qt::SkipEmptyParts);
    // Newer releases let the splash go a turn before the window is on the screen.
    const qsizetype gone = lines.indexOf("splash gone");
    if (QLibraryInfo::version() >= QVersionNumber(6, 5) &&
        lines.value(gone + 1) == "window on the screen")
      lines.swapItemsAt(gone, gone + 1);
    return lines;
  }

  /// The environment of this test, but with these alone to tell the language.
  static QProcessEnvironment environmentWith(const Variables& variables) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
      environment.remove(name);
    for (const auto& [name, value] : variables)
      environment.insert(name, value);
    return environment;
  }

  const QStringList usualStart_{
      "splash shown",
      "splash painted",
      "splash in the program's font",
      "window begun",
      "font: Ubuntu Mono Regular, 12 points, weight 1, italic: no, found as Ubuntu Mono",
      "splash with the message: yes, plain: no, its text: Kelmora Client v3.9b, its flags: yes",
      "window shown, with a parent: no",
      "window on the screen",
      "splash gone",
      "loop ended",
      "window gone"};
  int exitCode_ = -1;
};

void TestProgram::init() {
  QFile::remove("report.txt");
}

void TestProgram::startsBehindItsSplash() {
  QCOMPARE(run("close"), usualStart_);
}

void TestProgram::theEventLoopsExitCodeIsTheProgramsOwn_data() {
  QTest::addColumn<QString>("end");
  QTest::addColumn<int>("exitCode");
  QTest::newRow("the window is closed") << "close" << 0;
  QTest::newRow("the window is closed beside the help") << "close beside the help" << 0;
  QTest::newRow("the loop ends with a code") << "exit 7" << 7;
}

void TestProgram::theEventLoopsExitCodeIsTheProgramsOwn() {
  QFETCH(const QString, end);
  QFETCH(const int, exitCode);
  QCOMPARE(run(end), usualStart_);
  QCOMPARE(exitCode_, exitCode);
}

void TestProgram::argumentsThatAreNoOptionsOfOursChangeNothing_data() {
  QTest::addColumn<QStringList>("arguments");
  QTest::newRow("words") << QStringList{"kelmora.example", "4023"};
  QTest::newRow("options of the toolkit")
      << QStringList{"-style", "fusion", "--platform", "offscreen"};
  QTest::newRow("ours behind two dashes alone") << QStringList{"--", "--help", "-v"};
}

void TestProgram::argumentsThatAreNoOptionsOfOursChangeNothing() {
  QFETCH(const QStringList, arguments);
  QCOMPARE(run("close", arguments), usualStart_);
  QCOMPARE(exitCode_, 0);
}

void TestProgram::speaksTheLanguageOfTheDesktop_data() {
  QTest::addColumn<Variables>("variables");
  QTest::addColumn<bool>("isGerman");
  QTest::newRow("none is told") << Variables{} << false;
  QTest::newRow("LANG=C") << Variables{{"LANG", "C"}} << false;
  QTest::newRow("LANG=en_GB.UTF-8") << Variables{{"LANG", "en_GB.UTF-8"}} << false;
  QTest::newRow("one that the client does not speak")
      << Variables{{"LANG", "cy_GB.UTF-8"}} << false;
  QTest::newRow("LANG=de_DE.UTF-8") << Variables{{"LANG", "de_DE.UTF-8"}} << true;
  QTest::newRow("LC_ALL goes before LANG")
      << Variables{{"LANG", "en_US.UTF-8"}, {"LC_ALL", "de_AT.UTF-8"}} << true;
  QTest::newRow("LANGUAGE goes before both")
      << Variables{{"LANG", "de_DE.UTF-8"}, {"LC_ALL", "de_DE.UTF-8"}, {"LANGUAGE", "en:de"}}
      << false;
  QTest::newRow("the first of LANGUAGE that the client speaks")
      << Variables{{"LANG", "en_US.UTF-8"}, {"LANGUAGE", "cy:de:en"}} << true;
}

void TestProgram::speaksTheLanguageOfTheDesktop() {
  QFETCH(const Variables, variables);
  QFETCH(const bool, isGerman);
  if (isGerman && !KELMORA_SPEAKS_GERMAN)
    QSKIP("built without lrelease");
  const QStringList told = run("tell its words", {}, variables);
  const QStringList words = told.filter("action: ");
  QCOMPARE(words.size(), 11);
  QCOMPARE(words.first(),
           isGerman ? "action: Kelmora spielen (Strg+J)" : "action: Play Kelmora (Ctrl+J)");
  QCOMPARE(exitCode_, 0);
  const bool toolkitSpeaksIt =
      isGerman &&
      QFile::exists(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + "/qtbase_de.qm");
  QVERIFY(told.contains(toolkitSpeaksIt ? "the toolkit's button: Abbrechen"
                                        : "the toolkit's button: Cancel"));
  // And so do the answers without a window.
  QProcess program;
  program.setProcessEnvironment(environmentWith(variables));
  program.start(KELMORA_PROGRAM, {"--help"});
  QVERIFY(program.waitForFinished(30000));
  QCOMPARE(program.exitCode(), 0);
  QVERIFY(program.readAllStandardOutput().startsWith(isGerman ? "Aufruf: " : "Usage: "));
}

void TestProgram::answersWithoutADisplay_data() {
  QTest::addColumn<QString>("argument");
  QTest::addColumn<int>("exitCode");
  QTest::addColumn<QString>("output");
  QTest::addColumn<QString>("errors");
  QTest::newRow("--version") << "--version" << 0 << "kelmora 3.9b\n"
                             << "";
  QTest::newRow("--help") << "--help" << 0 << "Usage: kelmora [options]\n"
                          << "";
  QTest::newRow("an unknown option") << "--port" << 2 << ""
                                     << "kelmora: Unknown option 'port'.\n";
}

void TestProgram::answersWithoutADisplay() {
  QFETCH(const QString, argument);
  QFETCH(const int, exitCode);
  QFETCH(const QString, output);
  QFETCH(const QString, errors);
  QProcess program;
  QProcessEnvironment environment = environmentWith({});
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
    environment.remove(name);
  program.setProcessEnvironment(environment);
  program.start(KELMORA_PROGRAM, {argument});
  QVERIFY(program.waitForFinished(30000));
  QCOMPARE(program.exitStatus(), QProcess::NormalExit);
  QCOMPARE(program.exitCode(), exitCode);
  const QString printed = program.readAllStandardOutput();
  QCOMPARE(printed.left(printed.indexOf('\n') + 1), output);
  const QString complained = program.readAllStandardError();
  QCOMPARE(complained.left(complained.indexOf('\n') + 1), errors);
}

void TestProgram::closingTheWindowSavesEveryOption() {
  const auto storeFiles = [] {
    return QDir(qEnvironmentVariable("XDG_CONFIG_HOME") + "/Dunmere Works").entryList(QDir::Files);
  };
  QDir(qEnvironmentVariable("XDG_CONFIG_HOME") + "/Dunmere Works").removeRecursively();
  run("exit 0");
  QCOMPARE(storeFiles(), QStringList());
  run("close");
  QCOMPARE(storeFiles(), QStringList{"Kelmora Client v3.9b.conf"});
  QSettings store(
      qEnvironmentVariable("XDG_CONFIG_HOME") + "/Dunmere Works/Kelmora Client v3.9b.conf",
      QSettings::IniFormat);
  store.beginGroup("Global Settings");
  QCOMPARE(store.childKeys().size(), 38);
}

KELMORA_VALUE_TEST_MAIN(TestProgram)
#include "tst_program.moc"

#include <QApplication>
#include <QNetworkProxy>
#include <QScrollBar>
#include <QStyle>
#include <QStyleFactory>
#include <optional>

#include "PlayWindow.h"
#include "settings/SettingsFile.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

using namespace kelmora;
using namespace kelmora::settings;

/// Saving the session, exporting and importing the settings, from the toolbar.
class TestSettingsAndSession : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void theSessionIsSavedWithTheNormalBlackBehindIt();
  void theSessionGetsTheVeryNameGiven();
  void aSessionThatCannotBeSavedGoesUnsaid();
  void cancellingSavesNothing_data();
  void cancellingSavesNothing();
  void asksForAFile_data();
  void asksForAFile();
  void theCaptureChangesNothingItself_data();
  void theCaptureChangesNothingItself();
  void theBarHasTheFocusAfterwards_data();
  void theBarHasTheFocusAfterwards();
  void theExportIsAFileOfTheSettings();
  void anExportThatFailsSaysSo();
  void anImportRefreshesTheWindow();
  void anImportEndsBold();
  void anImportWithoutProxyLeavesTheProxyAlone();
  void anImportThatFailsSaysSoAndRefreshesNothing();
  void anImportDoesNotWriteTheStore();

 private:
  const QString styleAtStart_ = QApplication::style()->objectName();
};

void TestSettingsAndSession::init() {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  for (const QString& name : QDir().entryList(QDir::Files))
    QFile::remove(name);
}

void TestSettingsAndSession::cleanup() {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
  QApplication::setStyle(styleAtStart_);
}

void TestSettingsAndSession::theSessionIsSavedWithTheNormalBlackBehindIt() {
  PlayWindow play(5000, {{"black", "#010203"}});
  play.type("a line of this session");
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  play.pane->setFocus();
  const QString shown = play.text();
  const QByteArray stored = contentsOf(play.store.place().iniFile);
  const DialogAnswers answers{ExpectedDialog::file("session.html", "Save Game Session To File",
                                                   "Web Pages (*.htm *.html)")};
  play.actions.at(2)->trigger();
  QCOMPARE(play.text(), shown);
  QCOMPARE(contentsOf(play.store.place().iniFile), stored);
  QVERIFY(answers.allCame());
  const QByteArray page = contentsOf("session.html");
  QVERIFY(page.startsWith("<body bgcolor=\"#010203\"><!DOCTYPE"));
  QVERIFY(page.contains("a line of this session"));
  QCOMPARE(play.window->focusWidget(), play.bar);
}

void TestSettingsAndSession::theSessionGetsTheVeryNameGiven() {
  PlayWindow play(5000);
  play.type("a line of this session");
  const DialogAnswers answers{ExpectedDialog::file("session")};
  play.actions.at(2)->trigger();
  QVERIFY(contentsOf("session").contains("a line of this session"));
  QCOMPARE(QDir().entryList({"session*"}, QDir::Files), QStringList{"session"});
}

void TestSettingsAndSession::aSessionThatCannotBeSavedGoesUnsaid() {
  PlayWindow play(5000);
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  play.pane->setFocus();
  const QStringList before = QDir().entryList(QDir::Files);
  // The dialog counts letters, of which this name has few enough; the system
  // counts bytes.
  const DialogAnswers answers{ExpectedDialog::file(QString(200, QChar(0xe9)))};
  play.actions.at(2)->trigger();
  QVERIFY(answers.allCame());
  QCOMPARE(QDir().entryList(QDir::Files), before);
  QCOMPARE(play.window->focusWidget(), play.bar);
}

void TestSettingsAndSession::cancellingSavesNothing_data() {
  QTest::addColumn<int>("action");
  QTest::newRow("the session") << 2;
  QTest::newRow("the export") << 3;
  QTest::newRow("the import") << 4;
}

void TestSettingsAndSession::cancellingSavesNothing() {
  QFETCH(const int, action);
  PlayWindow play(5000);
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  play.pane->setFocus();
  const QStringList before = QDir().entryList(QDir::Files);
  const DialogAnswers answers{ExpectedDialog::file({})};
  play.actions.at(action)->trigger();
  QVERIFY(answers.allCame());
  QCOMPARE(QDir().entryList(QDir::Files), before);
  QCOMPARE(play.window->focusWidget(), play.bar);
}

void TestSettingsAndSession::asksForAFile_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QFileDialog::AcceptMode>("mode");
  QTest::newRow("to save the session in") << 2 << QFileDialog::AcceptSave;
  QTest::newRow("to export to") << 3 << QFileDialog::AcceptSave;
  QTest::newRow("to import from") << 4 << QFileDialog::AcceptOpen;
}

void TestSettingsAndSession::asksForAFile() {
  QFETCH(const int, action);
  QFETCH(const QFileDialog::AcceptMode, mode);
  PlayWindow play(5000);
  QVERIFY(QDir().mkpath("elsewhere"));
  const QString elsewhere = QDir("elsewhere").absolutePath();
  {
    const DialogAnswers cancel{ExpectedDialog::file({})};
    (void)QFileDialog::getOpenFileName(nullptr, {}, elsewhere);
  }
  std::optional<QFileDialog::AcceptMode> seenMode;
  QString seenFolder;
  const DialogAnswers answers{ExpectedDialog::of<QFileDialog>([&](QFileDialog& dialog) {
    seenMode = dialog.acceptMode();
    seenFolder = dialog.directory().absolutePath();
    dialog.reject();
  })};
  play.actions.at(action)->trigger();
  QVERIFY(answers.allCame());
  QCOMPARE(seenMode, mode);
  QCOMPARE(answers.parents(), QList<const QWidget*>{play.window.get()});
  // The window asks for no folder, so it is the one that was looked at last.
  QCOMPARE(seenFolder, elsewhere);
}

void TestSettingsAndSession::theCaptureChangesNothingItself_data() {
  QTest::addColumn<QString>("name");
  QTest::newRow("saved") << "session.html";
  QTest::newRow("not to be saved") << QString(200, QChar(0xe9));
  QTest::newRow("cancelled") << QString();
}

void TestSettingsAndSession::theCaptureChangesNothingItself() {
  QFETCH(const QString, name);
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("\x1b[1m\x1b[31mred\x1b[0m and http://kelmora.example/ " +
              QByteArray("line\r\n").repeated(200));
  play.window->runActions({QString::fromUtf8("/echo gr\u00fc\u00dfe \u20ac")});
  QTRY_VERIFY(play.text().count("line") == 200);
  // In the middle of reading, with words selected.
  play.pane->verticalScrollBar()->setValue(100);
  QTextCursor selection = settled(*play.pane).textCursor();
  selection.setPosition(4);
  selection.setPosition(40, QTextCursor::KeepAnchor);
  play.pane->setTextCursor(selection);
  play.pane->verticalScrollBar()->setValue(100);
  const ClientSettings settings = play.profile.settings;
  const QMap<QString, QString> variables = play.profile.variables.entries();
  const QString html = settled(*play.pane).toHtml();
  const int place = play.pane->verticalScrollBar()->value();

  const DialogAnswers answers{ExpectedDialog::file(name)};
  play.actions.at(2)->trigger();
  QVERIFY(answers.allCame());
  QCOMPARE(settled(*play.pane).toHtml(), html);
  QCOMPARE(play.pane->verticalScrollBar()->value(), place);
  QCOMPARE(settled(*play.pane).textCursor().position(), 40);
  QCOMPARE(settled(*play.pane).textCursor().anchor(), 4);
  QCOMPARE(play.profile.settings, settings);
  QCOMPARE(play.profile.variables.entries(), variables);
}

void TestSettingsAndSession::theBarHasTheFocusAfterwards_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QByteArray>("lines");
  QTest::addColumn<QString>("name");
  QTest::addColumn<bool>("fails");
  const QByteArray good = "port 4023\n";
  QTest::newRow("an export") << 3 << good << "my.settings" << false;
  QTest::newRow("an export that fails")
      << 3 << good << QString::fromUtf8("r\u00e9glages/x") << true;
  QTest::newRow("an import") << 4 << good << "my.settings" << false;
  QTest::newRow("an import that fails") << 4 << QByteArray("nonsense\n") << "my.settings" << true;
}

void TestSettingsAndSession::theBarHasTheFocusAfterwards() {
  QFETCH(const int, action);
  QFETCH(const QByteArray, lines);
  QFETCH(const QString, name);
  QFETCH(const bool, fails);
  PlayWindow play(5000);
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  QVERIFY(QDir().mkpath(QString::fromUtf8("r\u00e9glages")));
  writeFile("my.settings", lines);
  play.pane->setFocus();
  QCOMPARE(play.window->focusWidget(), play.pane);
  QList<ExpectedDialog> expected{ExpectedDialog::file(name)};
  if (fails)
    expected << ExpectedDialog::information();
  const DialogAnswers answers(expected);
  play.actions.at(action)->trigger();
  QVERIFY(answers.allCame());
  for (const QWidget* parent : answers.parents())
    QCOMPARE(parent, play.window.get());
  QCOMPARE(play.window->focusWidget(), play.bar);
}

void TestSettingsAndSession::theExportIsAFileOfTheSettings() {
  PlayWindow play(4023);
  const DialogAnswers answers{ExpectedDialog::file("my.settings", "Export Settings",
                                                   "Kelmora Client Settings (*.settings)")};
  play.actions.at(3)->trigger();
  QVERIFY(answers.allCame());
  QVERIFY(settings::exportSettings(play.profile.settings, "expected.settings"));
  QCOMPARE(contentsOf("my.settings"), contentsOf("expected.settings"));
  QVERIFY(contentsOf("my.settings").contains("\nport 4023\n"));
}

void TestSettingsAndSession::anExportThatFailsSaysSo() {
  PlayWindow play(5000);
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  // The dialog itself refuses a folder that is not there; one that vanishes
  // under it is the program's to notice.
  QVERIFY(QDir().mkpath("r\u00e9glages"));
  const DialogAnswers answers{
      ExpectedDialog::file(QString::fromUtf8("r\u00e9glages/my.settings")),
      ExpectedDialog::information("Export Settings",
                                  "There has been a failure exporting settings to the specified "
                                  "file.")};
  play.actions.at(3)->trigger();
  QVERIFY(answers.allCame());
  QCOMPARE(play.window->focusWidget(), play.bar);
}

void TestSettingsAndSession::anImportRefreshesTheWindow() {
  PlayWindow play(5000);
  const QString before = QApplication::style()->objectName();
  QString style;
  for (const QString& key : QStyleFactory::keys())
    if (key.compare(before, Qt::CaseInsensitive) != 0)
      style = key;
  QVERIFY2(!style.isEmpty(), "the toolkit has one style only");
  writeFile("my.settings", "interfaceStyle " + style.toLatin1() +
                               "\niconSize.width 24\niconSize.height 20\nwhite #112233\n"
                               "inFont Courier,15,-1,5,50,0,0,0,0,0\n"
                               "outFont Courier,13,-1,5,50,0,0,0,0,0\nuseProxyServer 1\n"
                               "proxyHostName 127.0.0.1\nproxyPortNumber 1080\n");
  const DialogAnswers answers{ExpectedDialog::file("my.settings", "Import Settings",
                                                   "Kelmora Client Settings (*.settings)")};
  play.actions.at(4)->trigger();
  QVERIFY(answers.allCame());
  QCOMPARE(play.window->findChild<QToolBar*>()->iconSize(), QSize(24, 20));
  QCOMPARE(play.bar->font().pointSize(), 15);
  QCOMPARE(play.pane->font().pointSize(), 13);
  QCOMPARE(QApplication::style()->objectName().toLower(), style.toLower());
  QCOMPARE(QNetworkProxy::applicationProxy().port(), 1080);
  play.window->clientConnected();
  QCOMPARE(play.formatOf("Connected to host!").foreground().color(), QColor("#112233"));
}

void TestSettingsAndSession::anImportEndsBold() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("\x1b[1m\x1b[31mloud\x1b[1m ");
  QTRY_VERIFY(play.text().contains("loud"));
  QCOMPARE(play.formatOf("loud").foreground().color(), QColor("#FF0000"));
  writeFile("my.settings", "port 4023\n");
  const DialogAnswers answers{ExpectedDialog::file("my.settings")};
  play.actions.at(4)->trigger();
  server.send("\x1b[31mquiet");
  QTRY_VERIFY(play.text().contains("quiet"));
  QCOMPARE(play.formatOf("quiet").foreground().color(), QColor("#660000"));
}

void TestSettingsAndSession::anImportWithoutProxyLeavesTheProxyAlone() {
  PlayWindow play(5000);
  QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::Socks5Proxy, "here", 77));
  writeFile("my.settings", "useProxyServer 0\n");
  const DialogAnswers answers{ExpectedDialog::file("my.settings")};
  play.actions.at(4)->trigger();
  QCOMPARE(QNetworkProxy::applicationProxy().port(), 77);
}

void TestSettingsAndSession::anImportThatFailsSaysSoAndRefreshesNothing() {
  PlayWindow play(5000);
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  writeFile("my.settings", "iconSize.width 24\nnonsense here\n");
  const DialogAnswers answers{
      ExpectedDialog::file("my.settings"),
      ExpectedDialog::information("Import Settings",
                                  "The specified file does not contain valid settings for this "
                                  "client.")};
  play.actions.at(4)->trigger();
  QVERIFY(answers.allCame());
  QCOMPARE(play.profile.settings.iconSize, QSize(24, 48));
  QCOMPARE(play.window->findChild<QToolBar*>()->iconSize(), QSize(48, 48));
  QCOMPARE(play.window->focusWidget(), play.bar);
}

void TestSettingsAndSession::anImportDoesNotWriteTheStore() {
  PlayWindow play(5000);
  writeFile("my.settings", "port 4023\n");
  const DialogAnswers answers{ExpectedDialog::file("my.settings")};
  play.actions.at(4)->trigger();
  QCOMPARE(play.profile.settings.port, 4023);
  QCOMPARE(play.store.value("port").toInt(), 5000);
  QVERIFY(play.window->close());
  QCOMPARE(play.store.value("port").toInt(), 4023);
}

KELMORA_GUI_TEST_MAIN(TestSettingsAndSession)
#include "tst_settingsandsession.moc"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QNetworkProxy>
#include <QStyle>

#include "PlayWindow.h"
#include "support/Controls.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"

namespace {

const QNetworkProxy untouched(QNetworkProxy::HttpProxy, QStringLiteral("before.invalid"), 7);

/// A window with its settings dialogs, opened and applied as a player does.
class SettingsPlay : public PlayWindow {
 public:
  using PlayWindow::PlayWindow;

  QDialog& openGeneral() const { return open(5, "General Settings"); }
  QDialog& openProxy() const { return open(6, "Proxy Settings"); }
  QDialog& openInterface() const {
    buttonOf(openGeneral(), "Interface style")->click();
    return *dialogTitled("Interface Settings");
  }
  /// Leaves the record ahead of the window: its lines are taken over up to the
  /// bad one at its end, and nothing of them takes effect.
  void importAndFail(const QByteArray& lines) const {
    writeFile("bad.settings", lines + "nonsense here\n");
    const DialogAnswers answers{ExpectedDialog::file("bad.settings"),
                                ExpectedDialog::information("Import Settings")};
    actions.at(4)->trigger();
    QVERIFY(answers.allCame());
  }
  [[nodiscard]] QSize icons() const { return window->findChild<QToolBar*>()->iconSize(); }

 private:
  QDialog& open(int action, const QString& title) const {
    actions.at(action)->trigger();
    return *dialogTitled(title);
  }
};

QString styleName() {
  return QApplication::style()->name();
}

}  // namespace

/// What each Apply button does to the window, to the style and to the proxy, and
/// what it leaves alone.
class TestAppliedSettings : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();
  void theGeneralSettingsGiveTheFontsToPaneAndBar();
  void theGeneralSettingsTakeWhatAFailedImportLeftInTheRecord();
  void theGeneralSettingsLeaveStyleIconsAndProxyAlone();
  void theGeneralSettingsReturnToTheResetColours();
  void theGeneralSettingsDoNotEndBold();
  void theProxySettingsInstallTheProxy_data();
  void theProxySettingsInstallTheProxy();
  void uncheckedTheyMakeConnectionsDirectThoughNothingChanged();
  void cancellingTheProxySettingsInstallsNothing();
  void theInterfaceSettingsSetStyleAndIcons();
  void anUnknownStyleLeavesTheStyle();
  void cancellingTheInterfaceSettingsSetsNothing();
  void nothingIsSavedByAnImportButByEveryApply();
};

void TestAppliedSettings::initTestCase() {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void TestAppliedSettings::init() {
  QApplication::setStyle("Fusion");
  QNetworkProxy::setApplicationProxy(untouched);
}

void TestAppliedSettings::cleanup() {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

void TestAppliedSettings::theGeneralSettingsGiveTheFontsToPaneAndBar() {
  const SettingsPlay play(5000);
  QDialog& dialog = play.openGeneral();
  buttonOf(dialog, "Output Window")->setFont(QFont("DejaVu Serif", 11));
  buttonOf(dialog, "Input Bar")->setFont(QFont("DejaVu Serif", 12));
  buttonOf(dialog, "Apply")->click();
  QCOMPARE(play.pane->font().family(), QString("DejaVu Serif"));
  QCOMPARE(play.pane->font().pointSize(), 11);
  QCOMPARE(play.bar->font().pointSize(), 12);
}

void TestAppliedSettings::theGeneralSettingsTakeWhatAFailedImportLeftInTheRecord() {
  const SettingsPlay play(5000);
  play.importAndFail("outFont Courier,13,-1,5,50,0,0,0,0,0\nwhite #112233\n");
  QCOMPARE(play.pane->font().pointSize(), 10);
  buttonOf(play.openGeneral(), "Apply")->click();
  QCOMPARE(play.pane->font().pointSize(), 13);
  play.window->clientConnected();
  QCOMPARE(play.formatOf("Connected to host!").foreground().color(), QColor("#112233"));
}

void TestAppliedSettings::theGeneralSettingsLeaveStyleIconsAndProxyAlone() {
  const SettingsPlay play(5000);
  play.importAndFail(
      "interfaceStyle Windows\niconSize.width 24\nuseProxyServer 1\nproxyHostName there.invalid\n");
  buttonOf(play.openGeneral(), "Apply")->click();
  QCOMPARE(styleName(), QString("fusion"));
  QCOMPARE(play.icons(), QSize(48, 48));
  QCOMPARE(QNetworkProxy::applicationProxy(), untouched);
}

void TestAppliedSettings::theGeneralSettingsReturnToTheResetColours() {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
  GameServer server;
  SettingsPlay play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("\x1b[31mbefore ");
  QTRY_VERIFY(play.text().contains("before"));
  QCOMPARE(play.formatOf("before").foreground().color(), QColor("#660000"));
  buttonOf(play.openGeneral(), "Apply")->click();
  server.send("after");
  QTRY_VERIFY(play.text().contains("after"));
  QCOMPARE(play.formatOf("after").foreground().color(), QColor("#bdbdbd"));
}

void TestAppliedSettings::theGeneralSettingsDoNotEndBold() {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
  GameServer server;
  SettingsPlay play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("\x1b[1mbefore ");
  QTRY_VERIFY(play.text().contains("before"));
  buttonOf(play.openGeneral(), "Apply")->click();
  server.send("\x1b[31mafter");
  QTRY_VERIFY(play.text().contains("after"));
  QCOMPARE(play.formatOf("after").foreground().color(), QColor("#ff0000"));
}

void TestAppliedSettings::theProxySettingsInstallTheProxy_data() {
  QTest::addColumn<bool>("used");
  QTest::addColumn<QString>("type");
  QTest::addColumn<QString>("port");
  QTest::addColumn<QNetworkProxy>("installed");
  const auto row = [](const char* name, const char* type, const char* port, int installedPort,
                      QNetworkProxy::ProxyType installedType = QNetworkProxy::Socks5Proxy) {
    QTest::newRow(name) << true << QString(type) << QString(port)
                        << QNetworkProxy(installedType, "there.invalid",
                                         static_cast<quint16>(installedPort), "us er",
                                         "pass;\\word");
  };
  row("SOCKS 5", "Socks5", "1080", 1080);
  row("HTTP", "HTTP", "1080", 1080, QNetworkProxy::HttpProxy);
  row("HTTP caching", "HTTP Caching", "1080", 1080, QNetworkProxy::HttpCachingProxy);
  row("FTP caching", "FTP Caching", "1080", 1080, QNetworkProxy::FtpCachingProxy);
  row("a negative port is cut to 16 bits", "Socks5", "-1", 65535);
  row("a port above 65535 is cut to 16 bits", "Socks5", "70000", 4464);
  row("a port beyond an int is 0", "Socks5", "99999999999", 0);
  row("a port that is no number is 0", "Socks5", "abc", 0);
  row("no port is 0", "Socks5", "", 0);
  QTest::newRow("not used, every connection is direct")
      << false << QString("HTTP") << QString("1080") << QNetworkProxy(QNetworkProxy::NoProxy);
}

void TestAppliedSettings::theProxySettingsInstallTheProxy() {
  QFETCH(const bool, used);
  QFETCH(const QString, type);
  QFETCH(const QString, port);
  QFETCH(const QNetworkProxy, installed);
  const SettingsPlay play(5000);
  QDialog& dialog = play.openProxy();
  dialog.findChild<QCheckBox*>()->setChecked(used);
  dialog.findChild<QComboBox*>()->setCurrentText(type);
  const QStringList texts{"there.invalid", port, "us er", "pass;\\word"};
  const auto fields = dialog.findChildren<QLineEdit*>();
  QCOMPARE(fields.size(), texts.size());
  for (qsizetype i = 0; i < texts.size(); ++i)
    fields.at(i)->setText(texts.at(i));
  buttonOf(dialog, "Apply")->click();
  QVERIFY(!dialog.isVisible());
  QCOMPARE(QNetworkProxy::applicationProxy(), installed);
}

void TestAppliedSettings::uncheckedTheyMakeConnectionsDirectThoughNothingChanged() {
  const SettingsPlay play(5000, {{"proxyHostName", "there.invalid"}});
  QCOMPARE(QNetworkProxy::applicationProxy(), untouched);
  const ClientSettings before = play.profile.settings;
  buttonOf(play.openProxy(), "Apply")->click();
  QCOMPARE(play.profile.settings, before);
  QCOMPARE(QNetworkProxy::applicationProxy(), QNetworkProxy(QNetworkProxy::NoProxy));
}

void TestAppliedSettings::cancellingTheProxySettingsInstallsNothing() {
  const SettingsPlay play(5000);
  QDialog& dialog = play.openProxy();
  dialog.findChild<QCheckBox*>()->setChecked(true);
  buttonOf(dialog, "Cancel")->click();
  QCOMPARE(QNetworkProxy::applicationProxy(), untouched);
}

void TestAppliedSettings::theInterfaceSettingsSetStyleAndIcons() {
  const SettingsPlay play(5000);
  QDialog& dialog = play.openInterface();
  dialog.findChild<QComboBox*>()->setCurrentText("Windows");
  const auto lengths = dialog.findChildren<QLineEdit*>();
  lengths.at(0)->setText("21");
  lengths.at(1)->setText("35");
  buttonOf(dialog, "Apply")->click();
  QCOMPARE(styleName(), QString("windows"));
  QCOMPARE(play.icons(), QSize(21, 35));
}

void TestAppliedSettings::anUnknownStyleLeavesTheStyle() {
  const SettingsPlay play(5000);
  QDialog& dialog = play.openInterface();
  QCOMPARE(dialog.findChild<QComboBox*>()->currentText(), QString());
  buttonOf(dialog, "Apply")->click();
  QCOMPARE(play.profile.settings.interfaceStyle, QString());
  QCOMPARE(styleName(), QString("fusion"));
}

void TestAppliedSettings::cancellingTheInterfaceSettingsSetsNothing() {
  const SettingsPlay play(5000);
  QDialog& dialog = play.openInterface();
  dialog.findChild<QComboBox*>()->setCurrentText("Windows");
  dialog.findChild<QLineEdit*>()->setText("21");
  buttonOf(dialog, "Cancel")->click();
  QCOMPARE(styleName(), QString("fusion"));
  QCOMPARE(play.icons(), QSize(48, 48));
}

void TestAppliedSettings::nothingIsSavedByAnImportButByEveryApply() {
  SettingsPlay play(5000);
  const auto isSaved = [&](const QString& user) {
    return play.store.value("proxyUserName").toString() == user;
  };
  play.profile.settings.proxyUserName = "first";
  writeFile("good.settings", "port 4023\n");
  const DialogAnswers answers{ExpectedDialog::file("good.settings")};
  play.actions.at(4)->trigger();
  QVERIFY(!isSaved("first"));
  buttonOf(play.openGeneral(), "Apply")->click();
  QVERIFY(isSaved("first"));
  play.profile.settings.proxyUserName = "second";
  buttonOf(play.openProxy(), "Apply")->click();
  QVERIFY(isSaved("second"));
  play.profile.settings.proxyUserName = "third";
  buttonOf(play.openInterface(), "Apply")->click();
  QVERIFY(isSaved("third"));
}

KELMORA_GUI_TEST_MAIN(TestAppliedSettings)
#include "tst_appliedsettings.moc"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkProxy>

#include "DialogSupport.h"
#include "dialogs/ProxyWidget.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::dialogs;
using namespace kelmora::settings;

class TestProxyWidget : public QObject, private SettingsDialogTest<ProxyWidget> {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void hasItsTitleAndIconAndIsModal();
  void everyWidgetStandsInItsPlace();
  void declaresItsSlotsInOrder();
  void itsButtonsAreTranslated();
  void mostHostNamesFit();
  void hidesThePassword();

  void showsTheStoredTypeAndAppliesIt_data();
  void showsTheStoredTypeAndAppliesIt();
  void storesTheChosenType_data();
  void storesTheChosenType();
  void showsTheRecord();
  void storesTheFieldsAsTyped();
  void aPortIsTypedAsAnInteger_data();
  void aPortIsTypedAsAnInteger();
  void uncheckedTheFieldsStay();
  void theRecordIsCompleteWhenTheWindowIsTold();
  void cancelStoresNothing_data();
  void cancelStoresNothing();

  void enterApplies_data();
  void enterApplies();
  void tabFollowsTheRows();
  void everyControlHasItsOwnSpokenName();

 private:
  QCheckBox* useProxy() const { return at<QCheckBox>(*dialog_, 0, 0); }
  QComboBox* type() const { return at<QComboBox>(*dialog_, 1, 1); }
  QLineEdit* field(int row) const { return at<QLineEdit>(*dialog_, row, 1); }
};

void TestProxyWidget::init() {
  create();
}

void TestProxyWidget::cleanup() {
  window_.reset();
}

void TestProxyWidget::hasItsTitleAndIconAndIsModal() {
  compareHead(*dialog_, "Proxy Settings", "proxy");
  QVERIFY(dialog_->isModal());
  QVERIFY(!dialog_->isVisible());
}

void TestProxyWidget::everyWidgetStandsInItsPlace() {
  QVERIFY(useProxy());
  QCOMPARE(useProxy()->text(), QString("Use the following proxy server:"));
  const QStringList labels{"Proxy type", "Hostname", "Port", "Username", "Password"};
  for (int row = 1; row <= 5; ++row) {
    QVERIFY(at<QLabel>(*dialog_, row, 0));
    QCOMPARE(at<QLabel>(*dialog_, row, 0)->text(), labels[row - 1]);
    QVERIFY(row == 1 ? static_cast<QWidget*>(type()) : field(row));
  }
  QCOMPARE(itemsOf(*type()), QStringList({"Socks5", "HTTP", "HTTP Caching", "FTP Caching"}));
  QCOMPARE(at<QPushButton>(*dialog_, 6, 0)->text(), QString("Apply"));
  QCOMPARE(at<QPushButton>(*dialog_, 6, 1)->text(), QString("Cancel"));
  QCOMPARE(placesIn(*dialog_), QStringList({"0,0", "1,0", "1,1", "2,0", "2,1", "3,0", "3,1", "4,0",
                                            "4,1", "5,0", "5,1", "6,0", "6,1"}));
}

void TestProxyWidget::declaresItsSlotsInOrder() {
  QCOMPARE(methodsOf(ProxyWidget::staticMetaObject),
           QStringList({"applySettings()", "cancelDialog()"}));
}

void TestProxyWidget::itsButtonsAreTranslated() {
  const Foreign language("ProxyWidget");
  const auto* inForeign = new ProxyWidget(*window_, host_, settings_);
  QCOMPARE(buttonTexts(*inForeign), foreign(buttonTexts(*dialog_)));
}

void TestProxyWidget::mostHostNamesFit() {
  dialog_->showDialog();
  QVERIFY(field(2)->width() >= 28 * field(2)->fontMetrics().averageCharWidth());
}

void TestProxyWidget::hidesThePassword() {
  QCOMPARE(field(5)->echoMode(), QLineEdit::Password);
  for (const int row : {2, 3, 4})
    QCOMPARE(field(row)->echoMode(), QLineEdit::Normal);
}

void TestProxyWidget::showsTheStoredTypeAndAppliesIt_data() {
  QTest::addColumn<int>("stored");
  QTest::addColumn<QString>("shown");
  QTest::addColumn<int>("applied");
  const auto row = [](int stored, const char* shown, int applied) {
    QTest::addRow("a stored %d is %s", stored, shown) << stored << QString(shown) << applied;
  };
  row(1, "Socks5", 1);
  row(3, "HTTP", 3);
  row(4, "HTTP Caching", 4);
  row(5, "FTP Caching", 5);
  row(0, "Socks5", 1);
  row(2, "Socks5", 1);
  row(77, "Socks5", 1);
  row(-1, "Socks5", 1);
  row(std::numeric_limits<int>::min(), "Socks5", 1);
}

void TestProxyWidget::showsTheStoredTypeAndAppliesIt() {
  QFETCH(const int, stored);
  QFETCH(const QString, shown);
  QFETCH(const int, applied);
  settings_.proxyType = stored;
  type()->setCurrentIndex(2);
  show();
  QCOMPARE(type()->currentText(), shown);
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.proxyType, applied);
}

void TestProxyWidget::storesTheChosenType_data() {
  QTest::addColumn<int>("index");
  QTest::addColumn<int>("type");
  QTest::newRow("SOCKS 5") << 0 << int(QNetworkProxy::Socks5Proxy);
  QTest::newRow("HTTP") << 1 << int(QNetworkProxy::HttpProxy);
  QTest::newRow("HTTP caching") << 2 << int(QNetworkProxy::HttpCachingProxy);
  QTest::newRow("FTP caching") << 3 << int(QNetworkProxy::FtpCachingProxy);
}

void TestProxyWidget::storesTheChosenType() {
  QFETCH(const int, index);
  QFETCH(const int, type);
  show();
  this->type()->setFocus();
  QTest::keyClick(this->type(), Qt::Key_Home);
  for (int i = 0; i < index; ++i)
    QTest::keyClick(this->type(), Qt::Key_Down);
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.proxyType, type);
}

void TestProxyWidget::showsTheRecord() {
  settings_.useProxyServer = true;
  settings_.proxyHostName = "proxy.example";
  settings_.proxyPortNumber = "abc";  // no port, but the store takes any text
  settings_.proxyUserName = "someone";
  settings_.proxyPassword = "secret word";
  show();
  QVERIFY(useProxy()->isChecked());
  QCOMPARE(field(2)->text(), QString("proxy.example"));
  QCOMPARE(field(3)->text(), QString("abc"));
  QCOMPARE(field(4)->text(), QString("someone"));
  QCOMPARE(field(5)->text(), QString("secret word"));
  // Apply without an edit changes nothing.
  const ClientSettings before = settings_;
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_, before);
  QCOMPARE(host_.calls, QList{Occasion::ProxyApplied});
}

void TestProxyWidget::storesTheFieldsAsTyped() {
  show();
  click(useProxy());
  useProxy()->setFocus();
  QTest::keyClick(useProxy(), Qt::Key_Tab);
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
  for (const char* text : {" host ", "1080", "us er", "pass;\\word"}) {
    QTest::keyClicks(dialog_->focusWidget(), text);
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
  }
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.proxyHostName, QString(" host "));
  QCOMPARE(settings_.proxyPortNumber, QString("1080"));
  QCOMPARE(settings_.proxyUserName, QString("us er"));
  QCOMPARE(settings_.proxyPassword, QString("pass;\\word"));
  QCOMPARE(settings_.useProxyServer, useProxy()->isChecked());
}

void TestProxyWidget::aPortIsTypedAsAnInteger_data() {
  QTest::addColumn<QString>("typed");
  QTest::addColumn<QString>("text");
  QTest::newRow("digits") << "8080"
                          << "8080";
  QTest::newRow("a negative number") << "-5"
                                     << "-5";
  QTest::newRow("zero") << "0"
                        << "0";
  QTest::newRow("more than 16 bits") << "70000"
                                     << "70000";
  QTest::newRow("the largest int") << "2147483647"
                                   << "2147483647";
  QTest::newRow("no further than an int") << "21474836470"
                                          << "2147483647";
  QTest::newRow("letters are refused") << "8a0b8c0"
                                       << "8080";
  QTest::newRow("commas are refused") << "8,080"
                                      << "8080";
  QTest::newRow("blanks are refused") << " 80 "
                                      << "80";
}

void TestProxyWidget::aPortIsTypedAsAnInteger() {
  QFETCH(const QString, typed);
  QFETCH(const QString, text);
  show();
  field(3)->setFocus();
  QTest::keyClicks(field(3), typed);
  QCOMPARE(field(3)->text(), text);
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.proxyPortNumber, text);
}

void TestProxyWidget::uncheckedTheFieldsStay() {
  settings_.useProxyServer = true;
  settings_.proxyHostName = "proxy.example";
  show();
  useProxy()->setFocus();
  QTest::keyClick(useProxy(), Qt::Key_Space);
  click(buttonOf(*dialog_, "Apply"));
  QVERIFY(!settings_.useProxyServer);
  QCOMPARE(settings_.proxyHostName, QString("proxy.example"));
  QCOMPARE(host_.calls, QList{Occasion::ProxyApplied});
}

void TestProxyWidget::theRecordIsCompleteWhenTheWindowIsTold() {
  show();
  type()->setCurrentIndex(3);
  field(2)->setText("h");
  field(5)->setText("p");
  useProxy()->setChecked(true);
  host_.onCall = [&] {
    QCOMPARE(settings_.proxyType, 5);
    QCOMPARE(settings_.proxyHostName, QString("h"));
    QCOMPARE(settings_.proxyPassword, QString("p"));
    QVERIFY(settings_.useProxyServer);
    QVERIFY(dialog_->isVisible());
  };
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(host_.calls, QList{Occasion::ProxyApplied});
  QVERIFY(!dialog_->isVisible());
}

void TestProxyWidget::cancelStoresNothing_data() {
  QTest::addColumn<bool>("byEscape");
  QTest::newRow("by the button") << false;
  QTest::newRow("by Escape") << true;
}

void TestProxyWidget::cancelStoresNothing() {
  QFETCH(const bool, byEscape);
  const ClientSettings before = settings_;
  show();
  useProxy()->setChecked(true);
  type()->setCurrentIndex(1);
  for (int row = 2; row <= 5; ++row)
    field(row)->setText("1");
  if (byEscape)
    QTest::keyClick(field(3), Qt::Key_Escape);
  else
    click(buttonOf(*dialog_, "Cancel"));
  QVERIFY(!dialog_->isVisible());
  QCOMPARE(settings_, before);
  QCOMPARE(host_.calls, QList<Occasion>());
  show();
  QVERIFY(!useProxy()->isChecked());
  QCOMPARE(type()->currentIndex(), 0);
  for (int row = 2; row <= 5; ++row)
    QCOMPARE(field(row)->text(), QString());
}

void TestProxyWidget::enterApplies_data() {
  QTest::addColumn<QString>("port");
  QTest::newRow("with a port") << "80";
  QTest::newRow("with no port") << "";
  QTest::newRow("with half a number") << "-";
}

void TestProxyWidget::enterApplies() {
  QFETCH(const QString, port);
  show();
  field(3)->setFocus();
  QTest::keyClicks(field(3), port);
  QTest::keyClick(field(3), Qt::Key_Return);
  QVERIFY(!dialog_->isVisible());
  QCOMPARE(settings_.proxyPortNumber, port);
}

void TestProxyWidget::tabFollowsTheRows() {
  show();
  QCOMPARE(tabOrder(*dialog_), QList<QWidget*>({useProxy(), type(), field(2), field(3), field(4),
                                                field(5), at(*dialog_, 6, 0), at(*dialog_, 6, 1)}));
}

void TestProxyWidget::everyControlHasItsOwnSpokenName() {
  show();
  QCOMPARE(spokenNames(*dialog_),
           QStringList({"Use the following proxy server:", "Proxy type", "Hostname", "Port",
                        "Username", "Password", "Apply", "Cancel"}));
}

KELMORA_GUI_TEST_MAIN(TestProxyWidget)
#include "tst_proxywidget.moc"

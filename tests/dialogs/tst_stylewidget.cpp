#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QStyleFactory>

#include "DialogSupport.h"
#include "dialogs/StyleWidget.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::dialogs;
using namespace kelmora::settings;

class TestStyleWidget : public QObject, private SettingsDialogTest<StyleWidget> {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void hasItsTitleAndIconAndIsModal();
  void everyWidgetStandsInItsPlace();
  void declaresItsSlotsInOrder();
  void itsButtonsAreTranslated();
  void offersTheToolkitsStyles();

  void showsTheStoredSize_data();
  void showsTheStoredSize();
  void selectsTheStoredStyle_data();
  void selectsTheStoredStyle();
  void aSizeIsTyped_data();
  void aSizeIsTyped();
  void typingReplacesTheSizeOnArrival();
  void arrivingByKeyboardSelectsTheSize_data();
  void arrivingByKeyboardSelectsTheSize();
  void widthAndHeightAreNotMixedUp();
  void anUnknownStyleBecomesNone();
  void theChosenStyleIsStored();
  void theRecordIsCompleteWhenTheWindowIsTold();
  void cancelStoresNothing_data();
  void cancelStoresNothing();

  void enterApplies();
  void tabFollowsTheRows();
  void everyControlHasItsOwnSpokenName();

 private:
  QLineEdit* width() const { return at<QLineEdit>(*dialog_, 0, 1); }
  QLineEdit* height() const { return at<QLineEdit>(*dialog_, 0, 2); }
  QComboBox* style() const { return at<QComboBox>(*dialog_, 1, 1); }
};

void TestStyleWidget::init() {
  create();
}

void TestStyleWidget::cleanup() {
  window_.reset();
}

void TestStyleWidget::hasItsTitleAndIconAndIsModal() {
  compareHead(*dialog_, "Interface Settings", "style");
  QVERIFY(dialog_->isModal());
  QVERIFY(!dialog_->isVisible());
}

void TestStyleWidget::everyWidgetStandsInItsPlace() {
  QCOMPARE(at<QLabel>(*dialog_, 0, 0)->text(), QString("Use the following icon dimensions:"));
  QCOMPARE(at<QLabel>(*dialog_, 1, 0)->text(), QString("Use the following interface style:"));
  QVERIFY(width());
  QVERIFY(height());
  QVERIFY(style());
  QCOMPARE(width()->inputMask(), QString("DD"));
  QCOMPARE(height()->inputMask(), QString("DD"));
  QCOMPARE(at<QPushButton>(*dialog_, 2, 0)->text(), QString("Apply"));
  QCOMPARE(at<QPushButton>(*dialog_, 2, 2)->text(), QString("Cancel"));
  QCOMPARE(placesIn(*dialog_), QStringList({"0,0", "0,1", "0,2", "1,0", "1,1", "2,0", "2,2"}));
}

void TestStyleWidget::declaresItsSlotsInOrder() {
  QCOMPARE(methodsOf(StyleWidget::staticMetaObject),
           QStringList({"applySettings()", "cancelDialog()"}));
}

void TestStyleWidget::itsButtonsAreTranslated() {
  const Foreign language("StyleWidget");
  const auto* inForeign = new StyleWidget(*window_, host_, settings_);
  QCOMPARE(buttonTexts(*inForeign), foreign(buttonTexts(*dialog_)));
}

void TestStyleWidget::offersTheToolkitsStyles() {
  QCOMPARE(itemsOf(*style()), QStyleFactory::keys());
  QVERIFY(itemsOf(*style()).contains("Windows"));
}

void TestStyleWidget::showsTheStoredSize_data() {
  QTest::addColumn<QSize>("stored");
  QTest::addColumn<QString>("widthText");
  QTest::addColumn<QString>("heightText");
  QTest::addColumn<QSize>("applied");
  const auto row = [](const char* name, QSize stored, const char* w, const char* h, QSize applied) {
    QTest::newRow(name) << stored << QString(w) << QString(h) << applied;
  };
  row("the default", {48, 48}, "48", "48", {48, 48});
  row("width and height", {16, 99}, "16", "99", {16, 99});
  row("one digit", {5, 7}, "5", "7", {5, 7});
  row("a zero has no place in the mask", {20, 40}, "2", "4", {2, 4});
  row("nothing but zeros", {0, 0}, "", "", {0, 0});
  row("more than two digits", {128, 512}, "12", "51", {12, 51});
  row("an unreadable size", {}, "1", "1", {1, 1});
}

void TestStyleWidget::showsTheStoredSize() {
  QFETCH(const QSize, stored);
  QFETCH(const QString, widthText);
  QFETCH(const QString, heightText);
  QFETCH(const QSize, applied);
  settings_.iconSize = stored;
  show();
  QCOMPARE(width()->text(), widthText);
  QCOMPARE(height()->text(), heightText);
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.iconSize, applied);
}

void TestStyleWidget::selectsTheStoredStyle_data() {
  QTest::addColumn<QString>("stored");
  QTest::addColumn<QString>("shown");
  QTest::newRow("a style of the toolkit") << "Windows"
                                          << "Windows";
  QTest::newRow("in other letters") << "windows"
                                    << "";
  QTest::newRow("the default, which is none") << "Plastique"
                                              << "";
  QTest::newRow("no name") << ""
                           << "";
  QTest::newRow("part of a name") << "Win"
                                  << "";
}

void TestStyleWidget::selectsTheStoredStyle() {
  QFETCH(const QString, stored);
  QFETCH(const QString, shown);
  settings_.interfaceStyle = stored;
  show();
  QCOMPARE(style()->currentText(), shown);
  QCOMPARE(style()->currentIndex(), QStyleFactory::keys().indexOf(stored));
}

void TestStyleWidget::aSizeIsTyped_data() {
  QTest::addColumn<QString>("typed");
  QTest::addColumn<int>("length");
  QTest::newRow("two digits") << "32" << 32;
  QTest::newRow("one digit") << "7" << 7;
  QTest::newRow("a zero is not taken") << "20" << 2;
  QTest::newRow("nor a leading one") << "048" << 48;
  QTest::newRow("no more than two") << "1234" << 12;
  QTest::newRow("letters are not taken") << "a1b2" << 12;
  QTest::newRow("a sign is not taken") << "-8" << 8;
  QTest::newRow("nothing is none") << "" << 0;
}

void TestStyleWidget::aSizeIsTyped() {
  QFETCH(const QString, typed);
  QFETCH(const int, length);
  show();
  height()->setFocus();
  height()->selectAll();
  QTest::keyClick(height(), Qt::Key_Delete);
  QTest::keyClicks(height(), typed);
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.iconSize, QSize(48, length));
}

void TestStyleWidget::typingReplacesTheSizeOnArrival() {
  show();
  QTest::keyClicks(dialog_->focusWidget(), "32");
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
  QTest::keyClicks(dialog_->focusWidget(), "6");
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Backtab);
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
  QTest::keyClicks(dialog_->focusWidget(), "64");
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.iconSize, QSize(32, 64));
}

void TestStyleWidget::arrivingByKeyboardSelectsTheSize_data() {
  QTest::addColumn<Qt::FocusReason>("reason");
  QTest::addColumn<QString>("selected");
  QTest::newRow("Tab") << Qt::TabFocusReason << "48";
  QTest::newRow("Shift+Tab") << Qt::BacktabFocusReason << "48";
  QTest::newRow("a mnemonic") << Qt::ShortcutFocusReason << "48";
  QTest::newRow("not the mouse") << Qt::MouseFocusReason << "";
  QTest::newRow("nor anything else") << Qt::OtherFocusReason << "";
}

void TestStyleWidget::arrivingByKeyboardSelectsTheSize() {
  QFETCH(const Qt::FocusReason, reason);
  show();
  style()->setFocus();
  height()->deselect();
  height()->setFocus(reason);
  QTEST(height()->selectedText(), "selected");
}

void TestStyleWidget::widthAndHeightAreNotMixedUp() {
  settings_.iconSize = {12, 34};
  show();
  QCOMPARE(width()->text(), QString("12"));
  QCOMPARE(height()->text(), QString("34"));
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.iconSize, QSize(12, 34));
}

void TestStyleWidget::anUnknownStyleBecomesNone() {
  show();
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.interfaceStyle, QString());
}

void TestStyleWidget::theChosenStyleIsStored() {
  show();
  style()->setFocus();
  QTest::keyClicks(style(), "Win");
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(settings_.interfaceStyle, QString("Windows"));
}

void TestStyleWidget::theRecordIsCompleteWhenTheWindowIsTold() {
  settings_.interfaceStyle = "Windows";
  show();
  width()->setText("21");
  host_.onCall = [&] {
    QCOMPARE(settings_.iconSize, QSize(21, 48));
    QCOMPARE(settings_.interfaceStyle, QString("Windows"));
    QVERIFY(dialog_->isVisible());
  };
  click(buttonOf(*dialog_, "Apply"));
  QCOMPARE(host_.calls, QList{Occasion::InterfaceApplied});
  QVERIFY(!dialog_->isVisible());
}

void TestStyleWidget::cancelStoresNothing_data() {
  QTest::addColumn<bool>("byEscape");
  QTest::newRow("by the button") << false;
  QTest::newRow("by Escape") << true;
}

void TestStyleWidget::cancelStoresNothing() {
  QFETCH(const bool, byEscape);
  const ClientSettings before = settings_;
  show();
  width()->setText("11");
  style()->setCurrentText("Windows");
  if (byEscape)
    QTest::keyClick(width(), Qt::Key_Escape);
  else
    click(buttonOf(*dialog_, "Cancel"));
  QVERIFY(!dialog_->isVisible());
  QCOMPARE(settings_, before);
  QCOMPARE(host_.calls, QList<Occasion>());
}

void TestStyleWidget::enterApplies() {
  show();
  QTest::keyClicks(dialog_->focusWidget(), "5");  // half filled
  QTest::keyClick(dialog_->focusWidget(), Qt::Key_Return);
  QVERIFY(!dialog_->isVisible());
  QCOMPARE(settings_.iconSize, QSize(5, 48));
}

void TestStyleWidget::tabFollowsTheRows() {
  show();
  QCOMPARE(tabOrder(*dialog_),
           QList<QWidget*>({width(), height(), style(), at(*dialog_, 2, 0), at(*dialog_, 2, 2)}));
}

void TestStyleWidget::everyControlHasItsOwnSpokenName() {
  show();
  QCOMPARE(spokenNames(*dialog_),
           QStringList({"Icon width", "Icon height", "Use the following interface style:", "Apply",
                        "Cancel"}));
}

KELMORA_GUI_TEST_MAIN(TestStyleWidget)
#include "tst_stylewidget.moc"

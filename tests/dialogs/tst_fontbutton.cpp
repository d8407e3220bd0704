#include "DialogSupport.h"
#include "dialogs/FontButton.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::dialogs;

class TestFontButton : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theButtonsFontIsTheShownOne_data();
  void theButtonsFontIsTheShownOne();
  void theLabelIsDrawnInTheFont();
  void anExtremeFontKeepsTheButtonsSize_data();
  void anExtremeFontKeepsTheButtonsSize();
  void theToolTipTellsTheTrueSize();
};

void TestFontButton::theButtonsFontIsTheShownOne_data() {
  QTest::addColumn<QString>("text");
  QTest::newRow("the default of the output pane") << "Courier,10,-1,5,50,0,0,0,0,0";
  QTest::newRow("a large one") << "DejaVu Sans,72,-1,5,700,1,0,0,0,0";
  QTest::newRow("one in pixels") << "DejaVu Sans,-1,90,5,400,0,0,0,0,0";
}

void TestFontButton::theButtonsFontIsTheShownOne() {
  QFETCH(const QString, text);
  QFont font;
  QVERIFY(font.fromString(text));
  FontButton button("label");
  button.setShownFont(font);
  QCOMPARE(button.font().toString(), font.toString());
}

void TestFontButton::theLabelIsDrawnInTheFont() {
  FontButton button("label");
  button.resize(200, 40);
  QImage before;
  for (const QFont& font :
       {QFont("DejaVu Sans", 9), QFont("DejaVu Sans", 13), QFont("DejaVu Sans", 13, QFont::Bold)}) {
    button.setShownFont(font);
    const QImage picture = button.grab().toImage();
    QVERIFY(picture != before);
    before = picture;
  }
}

void TestFontButton::anExtremeFontKeepsTheButtonsSize_data() {
  QTest::addColumn<QFont>("font");
  QTest::newRow("500 points") << QFont("DejaVu Sans", 500);
  QFont pixels("DejaVu Sans");
  pixels.setPixelSize(700);
  QTest::newRow("700 pixels") << pixels;
  QTest::newRow("one point") << QFont("DejaVu Sans", 1);
  QFont wide("DejaVu Sans", 10);
  wide.setLetterSpacing(QFont::AbsoluteSpacing, 400);
  QTest::newRow("wide letters") << wide;
}

void TestFontButton::anExtremeFontKeepsTheButtonsSize() {
  QFETCH(const QFont, font);
  FontButton button("Output Window");
  button.setShownFont(font);
  QVERIFY(button.sizeHint().width() <= 280);
  QVERIFY(button.sizeHint().height() <= 48);
  QVERIFY(button.sizeHint().height() >= 10);
  QVERIFY(button.minimumSizeHint().width() <= 280);
}

void TestFontButton::theToolTipTellsTheTrueSize() {
  FontButton button("label");
  button.setShownFont(QFont("DejaVu Sans", 72));
  QCOMPARE(button.toolTip(), QString("DejaVu Sans, 72 points"));
  QFont pixels("DejaVu Sans");
  pixels.setPixelSize(30);
  button.setShownFont(pixels);
  QCOMPARE(button.toolTip(), QString("DejaVu Sans, 30 pixels"));
  QCOMPARE(button.accessibleDescription(), button.toolTip());
}

KELMORA_GUI_TEST_MAIN(TestFontButton)
#include "tst_fontbutton.moc"

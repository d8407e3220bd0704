#include <QStyle>
#include <QStyleFactory>
#include <QVBoxLayout>
#include <cmath>

#include "DialogSupport.h"
#include "dialogs/ColourButton.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::dialogs;

namespace {

/// The contrast ratio of two colours, from 1 to 21, as the Web Content
/// Accessibility Guidelines define it.
double contrast(const QColor& one, const QColor& other) {
  const auto luminance = [](const QColor& colour) {
    const auto linear = [](double channel) {
      return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
  };
  const double a = luminance(one);
  const double b = luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QPalette darkTheme() {
  QPalette palette(QColor(50, 50, 50), QColor(30, 30, 30));
  palette.setColor(QPalette::WindowText, Qt::white);
  palette.setColor(QPalette::ButtonText, Qt::white);
  return palette;
}

}  // namespace

class TestColourButton : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theLabelIsReadableOnEveryColour();
  void theColourIsSeen_data();
  void theColourIsSeen();
  void theLabelIsSeen();
  void theFocusIsSeen();
  void everyGroupOfThePaletteHoldsTheColour();
  void theOtherRolesFollowTheTheme();
  void aScreenReaderHearsTheColour();
};

void TestColourButton::theLabelIsReadableOnEveryColour() {
  for (int red = 0; red < 256; red += 15)
    for (int green = 0; green < 256; green += 15)
      for (int blue = 0; blue < 256; blue += 15) {
        const QColor colour(red, green, blue);
        QVERIFY2(contrast(colour, dialogs::readableOn(colour)) >= 4.5, qPrintable(colour.name()));
      }
}

void TestColourButton::theColourIsSeen_data() {
  QTest::addColumn<QString>("style");
  QTest::addColumn<bool>("dark");
  for (const QString& style : QStyleFactory::keys())
    for (const bool dark : {false, true})
      QTest::addRow("in %s, %s", qPrintable(style), dark ? "dark" : "light") << style << dark;
}

void TestColourButton::theColourIsSeen() {
  QFETCH(const QString, style);
  QFETCH(const bool, dark);
  QApplication::setStyle(style);
  QWidget parent;
  if (dark)
    parent.setPalette(darkTheme());
  auto* layout = new QVBoxLayout(&parent);
  auto* button = new ColourButton("x", &parent);
  layout->addWidget(button);
  parent.show();
  QVERIFY(QTest::qWaitForWindowExposed(&parent));
  for (const char* name : {"#000000", "#ffffff", "#bdbdbd", "#660000", "#2e2efe", "#00ff00"}) {
    const QColor colour(name);
    button->setColour(colour);
    const QImage picture = button->grab().toImage();
    int seen = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x)
        seen += picture.pixelColor(x, y) == colour;
    QVERIFY2(seen * 2 > picture.width() * picture.height(), name);
  }
}

void TestColourButton::theLabelIsSeen() {
  ColourButton button("Magenta");
  ColourButton bare("");
  for (ColourButton* each : {&button, &bare}) {
    each->setColour(Qt::darkGreen);
    each->resize(120, 30);
  }
  QVERIFY(button.grab().toImage() != bare.grab().toImage());
  QVERIFY(button.sizeHint().width() >= button.fontMetrics().horizontalAdvance("Magenta"));
}

void TestColourButton::theFocusIsSeen() {
  QWidget parent;
  auto* layout = new QVBoxLayout(&parent);
  auto* button = new ColourButton("x", &parent);
  auto* other = new QPushButton("y", &parent);
  layout->addWidget(button);
  layout->addWidget(other);
  button->setColour(Qt::black);
  parent.show();
  QVERIFY(QTest::qWaitForWindowActive(&parent));
  // White on black, within the frame: the letter, and what shows the focus.
  const auto ink = [button] {
    const QImage image = button->grab(button->rect().adjusted(4, 4, -4, -4)).toImage();
    int bright = 0;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x)
        bright += image.pixelColor(x, y).lightness() > 128 ? 1 : 0;
    return bright;
  };
  button->setFocus();
  const int withFocus = ink();
  other->setFocus();
  QVERIFY(withFocus > ink());
}

void TestColourButton::everyGroupOfThePaletteHoldsTheColour() {
  ColourButton button("x");
  button.setColour(Qt::cyan);
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
    QCOMPARE(button.palette().color(group, QPalette::Button), QColor(Qt::cyan));
  QCOMPARE(button.colour(), QColor(Qt::cyan));
}

void TestColourButton::theOtherRolesFollowTheTheme() {
  QWidget parent;
  auto* button = new ColourButton("x", &parent);
  button->setColour(Qt::red);
  parent.setPalette(darkTheme());
  QCOMPARE(button->colour(), QColor(Qt::red));
  QCOMPARE(button->palette().color(QPalette::ButtonText), QColor(Qt::white));
}

void TestColourButton::aScreenReaderHearsTheColour() {
  ColourButton button("x");
  button.setColour(QColor(1, 2, 255));
  QCOMPARE(button.accessibleDescription(), QString("#0102ff"));
  QCOMPARE(button.toolTip(), QString("#0102ff"));
}

KELMORA_GUI_TEST_MAIN(TestColourButton)
#include "tst_colourbutton.moc"

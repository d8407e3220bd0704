#include <QGuiApplication>
#include <QTest>
#include <limits>

#include "settings/UsableValues.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::settings;

namespace {

constexpr int intMax = std::numeric_limits<int>::max();
constexpr int intMin = std::numeric_limits<int>::min();

}  // namespace

class TestUsableValues : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void windowSize_data();
  void windowSize();
  void windowPos_data();
  void windowPos();
  void posThatIsStored_data();
  void posThatIsStored();
  void iconSize_data();
  void iconSize();
  void font_data();
  void font();
  void anUnreadableFontTextIsTheDefaultFont_data();
  void anUnreadableFontTextIsTheDefaultFont();
  void spacingsBeyondReasonAreDropped();
  void theWidestSpacings_data();
  void theWidestSpacings();
  void anOrdinaryFontIsNotTouched();
};

void TestUsableValues::windowSize_data() {
  QTest::addColumn<QSize>("stored");
  QTest::addColumn<QSize>("used");
  const QSize fallback(800, 800);
  QTest::newRow("an ordinary size stays") << QSize(1024, 768) << QSize(1024, 768);
  QTest::newRow("one pixel stays") << QSize(1, 1) << QSize(1, 1);
  QTest::newRow("the largest stays") << QSize(8192, 9000) << QSize(8192, 9000);
  QTest::newRow("an invalid size is the default") << QSize() << fallback;
  QTest::newRow("no width is the default") << QSize(0, 100) << fallback;
  QTest::newRow("no height is the default") << QSize(100, 0) << fallback;
  QTest::newRow("a negative size is the default") << QSize(intMin, intMin) << fallback;
  QTest::newRow("too wide is the default") << QSize(8193, 10) << fallback;
  QTest::newRow("too high is the default") << QSize(10, 9001) << fallback;
  QTest::newRow("a giant is the default") << QSize(intMax, intMax) << fallback;
}

void TestUsableValues::windowSize() {
  QFETCH(QSize, stored);
  QFETCH(QSize, used);
  QCOMPARE(settings::usableWindowSize(stored, QSize(8192, 9000)), used);
}

void TestUsableValues::windowPos_data() {
  QTest::addColumn<QPoint>("stored");
  QTest::addColumn<QSize>("size");
  QTest::addColumn<QPoint>("used");
  const QSize size(800, 600);
  const QPoint fallback(200, 200);
  QTest::newRow("on the first screen") << QPoint(10, 20) << size << QPoint(10, 20);
  QTest::newRow("on the second screen") << QPoint(2000, 150) << size << QPoint(2000, 150);
  QTest::newRow("on the screen to the left") << QPoint(-900, 0) << size << QPoint(-900, 0);
  QTest::newRow("with its last column on a screen") << QPoint(-1799, 0) << size << QPoint(-1799, 0);
  QTest::newRow("just off to the left") << QPoint(-1800, 0) << size << fallback;
  QTest::newRow("with its first row on a screen") << QPoint(0, 1079) << size << QPoint(0, 1079);
  QTest::newRow("just off below") << QPoint(0, 1080) << size << fallback;
  QTest::newRow("in the gap below the second screen") << QPoint(2000, 1000) << size << fallback;
  QTest::newRow("at the far end of int") << QPoint(intMax, intMax) << size << fallback;
  QTest::newRow("at the near end of int") << QPoint(intMin, intMin) << size << fallback;
  QTest::newRow("from the near end of int to a screen")
      << QPoint(intMin, 0) << QSize(intMax, 600) << QPoint(intMin, 0);
}

void TestUsableValues::windowPos() {
  QFETCH(QPoint, stored);
  QFETCH(QSize, size);
  QFETCH(QPoint, used);
  const QList<QRect> screens = {QRect(0, 0, 1920, 1080), QRect(1920, 100, 1280, 800),
                                QRect(-1000, 0, 1000, 1000)};
  QCOMPARE(settings::usableWindowPos(stored, size, screens), used);
  QCOMPARE(settings::usableWindowPos(stored, size, {}), QPoint(200, 200));
}

void TestUsableValues::posThatIsStored_data() {
  QTest::addColumn<QString>("platform");
  QTest::addColumn<QPoint>("stored");
  const QPoint now(-3, -30);
  const QPoint atStart(200, 100);
  QTest::newRow("on X11") << "xcb" << now;
  QTest::newRow("on Windows") << "windows" << now;
  QTest::newRow("on macOS") << "cocoa" << now;
  QTest::newRow("without a screen") << "offscreen" << now;
  QTest::newRow("on Wayland") << "wayland" << atStart;
  QTest::newRow("on Wayland with another buffer") << "wayland-egl" << atStart;
}

void TestUsableValues::posThatIsStored() {
  QFETCH(const QString, platform);
  QTEST(settings::posToStore({-3, -30}, {200, 100}, platform), "stored");
}

void TestUsableValues::iconSize_data() {
  QTest::addColumn<QSize>("stored");
  QTest::addColumn<QSize>("used");
  QTest::newRow("the default stays") << QSize(48, 48) << QSize(48, 48);
  QTest::newRow("nothing stays nothing") << QSize(0, 0) << QSize(0, 0);
  QTest::newRow("the largest stays") << QSize(16777215, 16777215) << QSize(16777215, 16777215);
  QTest::newRow("each side by itself") << QSize(16777216, 16) << QSize(48, 16);
  QTest::newRow("a negative side asks for the style's own") << QSize(16, -5) << QSize(16, -5);
  QTest::newRow("an invalid size, too") << QSize() << QSize();
  QTest::newRow("giants") << QSize(intMax, intMax) << QSize(48, 48);
}

void TestUsableValues::iconSize() {
  QFETCH(QSize, stored);
  QFETCH(QSize, used);
  QCOMPARE(settings::usableIconSize(stored), used);
}

void TestUsableValues::font_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<qreal>("points");
  QTest::addColumn<int>("pixels");
  QTest::newRow("an ordinary size") << "Courier,10,-1,5,50,0,0,0,0,0" << 10.0 << -1;
  QTest::newRow("half points stay") << "Courier,10.5,-1,5,50,0,0,0,0,0" << 10.5 << -1;
  QTest::newRow("the largest points") << "Courier,200,-1,5,50,0,0,0,0,0" << 200.0 << -1;
  QTest::newRow("points beyond") << "Courier,200.5,-1,5,50,0,0,0,0,0" << 200.0 << -1;
  QTest::newRow("monstrous points") << "Courier,100000,-1,5,50,0,0,0,0,0" << 200.0 << -1;
  QTest::newRow("points beyond a double") << "Courier,1e999,-1,5,50,0,0,0,0,0" << 200.0 << -1;
  QTest::newRow("infinite points") << "Courier,inf,-1,5,50,0,0,0,0,0" << 200.0 << -1;
  QTest::newRow("the largest pixels") << "Courier,-1,400,5,50,0,0,0,0,0" << -1.0 << 400;
  QTest::newRow("pixels beyond") << "Courier,-1,2147483647,5,50,0,0,0,0,0" << -1.0 << 400;
}

void TestUsableValues::font() {
  QFETCH(QString, text);
  QFETCH(qreal, points);
  QFETCH(int, pixels);
  const QFont font = settings::fontFromText(text);
  QCOMPARE(font.family(), QStringLiteral("Courier"));
  QCOMPARE(font.pointSizeF(), points);
  QCOMPARE(font.pixelSize(), pixels);
}

void TestUsableValues::anUnreadableFontTextIsTheDefaultFont_data() {
  QTest::addColumn<QString>("text");
  QTest::newRow("nothing") << QString();
  QTest::newRow("a family of no name") << ",10,-1,5,50,0,0,0,0,0";
  QTest::newRow("too few parts") << "Courier,10,-1,5";
  QTest::newRow("too many parts") << QStringLiteral("Courier") +
                                         QStringLiteral(",1").repeated(5000);
}

void TestUsableValues::anUnreadableFontTextIsTheDefaultFont() {
  QFETCH(QString, text);
  QTest::ignoreMessage(
      QtWarningMsg, QRegularExpression(QStringLiteral("^QFont::fromString: Invalid description")));
  QCOMPARE(settings::fontFromText(text), QFont());
}

void TestUsableValues::spacingsBeyondReasonAreDropped() {
  const QFont font =
      settings::fontFromText(QStringLiteral("Courier,10,-1,5,400,0,0,0,0,0,0,1,1e300,-1e300,0,1"));
  QCOMPARE(font.letterSpacing(), 0.0);
  QCOMPARE(font.wordSpacing(), 0.0);
  QCOMPARE(font.pointSize(), 10);
}

void TestUsableValues::theWidestSpacings_data() {
  QTest::addColumn<qreal>("spacing");
  QTest::addColumn<bool>("stays");
  QTest::newRow("as wide as may be") << 400.0 << true;
  QTest::newRow("a little wider") << 400.5 << false;
  QTest::newRow("as narrow as may be") << -400.0 << true;
  QTest::newRow("a little narrower") << -400.5 << false;
  QTest::newRow("no number") << qQNaN() << false;
}

void TestUsableValues::theWidestSpacings() {
  QFETCH(qreal, spacing);
  QFETCH(bool, stays);
  QFont font(QStringLiteral("Courier"), 10);
  font.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
  font.setWordSpacing(spacing);
  const QFont used = settings::usableFont(font);
  QCOMPARE(used.letterSpacing(), stays ? spacing : 0.0);
  QCOMPARE(used.letterSpacingType(), stays ? QFont::AbsoluteSpacing : QFont::PercentageSpacing);
  QCOMPARE(used.wordSpacing(), stays ? spacing : 0.0);
}

void TestUsableValues::anOrdinaryFontIsNotTouched() {
  QFont font(QStringLiteral("Courier"), 14, QFont::Bold, true);
  font.setLetterSpacing(QFont::AbsoluteSpacing, 2);
  font.setUnderline(true);
  QCOMPARE(settings::usableFont(font), font);
  QCOMPARE(settings::fontFromText(font.toString()), font);
}

KELMORA_VALUE_TEST_MAIN(TestUsableValues)
#include "tst_usablevalues.moc"

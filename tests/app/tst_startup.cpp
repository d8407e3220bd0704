#include <QApplication>
#include <QAudioDevice>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLibraryInfo>
#include <QMediaDevices>
#include <QPixmap>
#include <QSoundEffect>
#include <QTest>
#include <QVersionNumber>

#include "app/ApplicationFonts.h"
#include "app/Beeper.h"
#include "app/MainWidget.h"
#include "app/Profile.h"
#include "app/StartSplash.h"
#include "support/OwnStore.h"
#include "support/ScratchMain.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::app;
using namespace kelmora::terminal;

namespace {

/// Notes when a widget is painted for the first time.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(QWidget& watched) { watched.installEventFilter(this); }
  [[nodiscard]] bool painted() const { return painted_; }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    painted_ = painted_ || event->type() == QEvent::Paint;
    return false;
  }

 private:
  bool painted_ = false;
};

}  // namespace

/// The first second of the program.
class TestStartup : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theWindowIsPaintedWithinASecondOfTheSplash();
  void theDefaultFontIsTheEmbeddedOne();
  void courierIsOfFixedPitch_data();
  void courierIsOfFixedPitch();
  void theBeepCanBeLoadedAndPlayed();
};

void TestStartup::theWindowIsPaintedWithinASecondOfTheSplash() {
  QElapsedTimer clock;
  clock.start();
  StartSplash splash(QPixmap(QStringLiteral(":/icons/splash.png")));
  splash.show();
  QVERIFY(splash.isVisible());
  installApplicationFonts();
  QApplication::processEvents();
  const OwnStore store;
  Profile profile(store.place());
  MainWidget window(profile);
  const PaintWatch watch(window);
  window.show();
  splash.finish(&window);
  QVERIFY(QTest::qWaitFor([&] { return watch.painted(); }));
  const qint64 elapsed = clock.elapsed();
  qInfo("first paint %lld ms after the splash", static_cast<long long>(elapsed));
  QVERIFY(!splash.isVisible());
  QVERIFY(elapsed < 1000);
}

void TestStartup::theDefaultFontIsTheEmbeddedOne() {
  installApplicationFonts();
  const QFont font = QApplication::font();
  QCOMPARE(font.family(), QString("Ubuntu Mono Regular"));
  QCOMPARE(font.pointSize(), 12);
  QCOMPARE(int(font.weight()), 1);
  QVERIFY(!font.italic());
  QCOMPARE(QFontInfo(font).family(), QString("Ubuntu Mono"));
}

void TestStartup::courierIsOfFixedPitch_data() {
  QTest::addColumn<QString>("family");
  QTest::newRow("the font of the pane and the bar") << "Courier";
  QTest::newRow("the font of the licences") << "Courier New";
}

void TestStartup::courierIsOfFixedPitch() {
  QFETCH(const QString, family);
  const QString found = QFontDatabase::hasFamily(family) ? family : QString("Courier Prime");
  installApplicationFonts();
  QCOMPARE(QFontInfo(QFont(family, 10)).family(), found);
  const QFontMetrics metrics(QFont(family, 10));
  QCOMPARE(metrics.horizontalAdvance("iiiiiiiiii"), metrics.horizontalAdvance("WWWWWWWWWW"));
}

void TestStartup::theBeepCanBeLoadedAndPlayed() {
  QObject owner;
  Beeper beeper(owner);
  QVERIFY(!owner.findChild<QSoundEffect*>());
  beeper.beep();
  const auto* sound = owner.findChild<QSoundEffect*>();
  QVERIFY(sound);
  if (QLibraryInfo::version() >= QVersionNumber(6, 5) &&
      QMediaDevices::defaultAudioOutput().isNull())
    QSKIP("newer releases load no sound without a device to play it on");
  QTRY_VERIFY(sound->isLoaded());
  beeper.beep();
  QCOMPARE(owner.findChildren<QSoundEffect*>().size(), 1);
}

KELMORA_GUI_TEST_MAIN(TestStartup)
#include "tst_startup.moc"

#include <QApplication>
#include <QProgressBar>
#include <QTest>
#include <QWidget>

#include "support/ScratchMain.h"
#include "terminal/view/PaneTurns.h"
#include "terminal/view/VitalsBars.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// The three bars on the toolbar.
class TestVitalsBars : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void theBarsStandWhereTheyBelong_data();
  void theBarsStandWhereTheyBelong();
  void allBarsStartFullUnderOneName();
  void aPromptIsShownAtOnce();
  void twoPromptsWithinOneFrameEndOnTheLast();
  void aPromptAfterAFrameIsShownAtOnce();
  void aBarKeepsItsValue_data();
  void aBarKeepsItsValue();
  void aBarShowsAllOfItsRange();

 private:
  [[nodiscard]] QList<int> values() const {
    QList<int> shown;
    for (const QProgressBar* bar : toolbar_->findChildren<QProgressBar*>())
      shown << bar->value();
    return shown;
  }

  std::unique_ptr<QWidget> toolbar_;
  std::unique_ptr<VitalsBars> bars_;
};

void TestVitalsBars::init() {
  bars_.reset();
  toolbar_ = std::make_unique<QWidget>();
  bars_ = std::make_unique<VitalsBars>(*toolbar_);
}

void TestVitalsBars::theBarsStandWhereTheyBelong_data() {
  QTest::addColumn<int>("bar");
  QTest::addColumn<QRect>("place");
  QTest::addColumn<QString>("styleSheet");
  QTest::addColumn<QString>("name");
  QTest::newRow("hit points are red")
      << 0 << QRect(QPoint(670, 10), QPoint(787, 25)) << "::chunk { background-color: red }"
      << "Hit points";
  QTest::newRow("spell points are blue")
      << 1 << QRect(QPoint(670, 30), QPoint(787, 45)) << "::chunk { background-color: blue }"
      << "Spell points";
  QTest::newRow("endurance points are green")
      << 2 << QRect(QPoint(670, 50), QPoint(787, 65)) << "::chunk { background-color: green }"
      << "Endurance points";
}

void TestVitalsBars::theBarsStandWhereTheyBelong() {
  QFETCH(const int, bar);
  QFETCH(const QRect, place);
  QFETCH(const QString, styleSheet);
  QFETCH(const QString, name);
  const QProgressBar* shown = toolbar_->findChildren<QProgressBar*>().at(bar);
  QCOMPARE(shown->geometry(), place);
  QCOMPARE(shown->styleSheet(), styleSheet);
  QCOMPARE(shown->accessibleName(), name);
  QCOMPARE(shown->toolTip(), name);
}

void TestVitalsBars::allBarsStartFullUnderOneName() {
  const auto all = toolbar_->findChildren<QProgressBar*>(QString(), Qt::FindDirectChildrenOnly);
  QCOMPARE(all.size(), 3);
  for (const QProgressBar* bar : all) {
    QCOMPARE(bar->objectName(), QString("progHP"));
    QVERIFY(!bar->isTextVisible());
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 100);
    QCOMPARE(bar->value(), 100);
  }
}

void TestVitalsBars::aPromptIsShownAtOnce() {
  bars_->show({25, 100, 0});
  QCOMPARE(values(), (QList<int>{25, 100, 0}));
}

void TestVitalsBars::twoPromptsWithinOneFrameEndOnTheLast() {
  bars_->show({10, 20, 30});
  bars_->show({11, 21, 31});
  bars_->show({12, 22, 32});
  QCOMPARE(values(), (QList<int>{10, 20, 30}));
  QTRY_COMPARE(values(), (QList<int>{12, 22, 32}));
  // Prompts after that begin a new frame.
  bars_->show({13, 23, 33});
  QTRY_COMPARE(values(), (QList<int>{13, 23, 33}));
}

void TestVitalsBars::aPromptAfterAFrameIsShownAtOnce() {
  bars_->show({10, 20, 30});
  QTest::qSleep(frameLength + 1);
  bars_->show({11, 21, 31});
  QCOMPARE(values(), (QList<int>{11, 21, 31}));
}

void TestVitalsBars::aBarKeepsItsValue_data() {
  QTest::addColumn<bool>("given");
  QTest::addColumn<int>("percentage");
  QTest::newRow("where none is given") << false << 0;
  QTest::newRow("where it is above the maximum") << true << 101;
  QTest::newRow("where it is far above the maximum") << true << 1000;
  QTest::newRow("where it is below nothing") << true << -1;
}

void TestVitalsBars::aBarKeepsItsValue() {
  QFETCH(const bool, given);
  QFETCH(const int, percentage);
  bars_->show({40, 50, 60});
  const auto odd = given ? std::optional(percentage) : std::nullopt;
  bars_->show({odd, 51, odd});
  QTRY_COMPARE(values(), (QList<int>{40, 51, 60}));
}

void TestVitalsBars::aBarShowsAllOfItsRange() {
  bars_->show({0, 100, 1});
  QCOMPARE(values(), (QList<int>{0, 100, 1}));
}

KELMORA_GUI_TEST_MAIN(TestVitalsBars)
#include "tst_vitalsbars.moc"

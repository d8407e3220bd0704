#include <QTest>

#include "support/ScratchMain.h"
#include "terminal/view/PaneTurns.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

constexpr qsizetype little = 1000;
constexpr qsizetype much = PaneTurns::muchText + 1;

}  // namespace

class TestPaneTurns : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void textAfterAPauseIsShownAtOnce();
  void textAfterATurnWaitsForTheEndOfItsFrame();
  void aTurnTakesWhatFits_data();
  void aTurnTakesWhatFits();
  void aFloodWaitsLongerForTheNextTurn();
  void aSlowTurnStopsThePaneForNoSeconds();
};

void TestPaneTurns::textAfterAPauseIsShownAtOnce() {
  PaneTurns turns;
  QCOMPARE(turns.textComes(), 0);
  (void)turns.begin(little);
  QTest::qSleep(frameLength + 1);
  QCOMPARE(turns.textComes(), 0);
}

void TestPaneTurns::textAfterATurnWaitsForTheEndOfItsFrame() {
  // Repeated, because the machine may pause between the two calls.
  for (int attempt = 0; attempt < 100; ++attempt) {
    PaneTurns turns;
    QElapsedTimer timer;
    timer.start();
    (void)turns.begin(little);
    const int delay = turns.textComes();
    if (timer.elapsed() > 2)
      continue;
    QVERIFY(delay >= frameLength - 2 && delay <= frameLength);
    return;
  }
  QFAIL("this machine never runs two calls within two milliseconds");
}

void TestPaneTurns::aTurnTakesWhatFits_data() {
  QTest::addColumn<bool>("arriving");
  QTest::addColumn<qsizetype>("bytes");
  QTest::addColumn<int>("milliseconds");
  QTest::newRow("half a frame of little") << true << little << 8;
  QTest::newRow("half a frame of little that stands") << false << little << 8;
  QTest::newRow("half a frame to catch up with much") << false << much << 8;
  QTest::newRow("a glimpse of much while more comes") << true << much << 2;
}

void TestPaneTurns::aTurnTakesWhatFits() {
  QFETCH(const bool, arriving);
  QFETCH(const qsizetype, bytes);
  QFETCH(const int, milliseconds);
  PaneTurns turns;
  if (arriving)
    (void)turns.textComes();
  QCOMPARE(turns.begin(bytes), milliseconds);
}

void TestPaneTurns::aFloodWaitsLongerForTheNextTurn() {
  constexpr int taken = 10;
  PaneTurns turns;
  (void)turns.textComes();
  (void)turns.begin(little);
  QTest::qSleep(taken);
  // The next turn begins eight times as long after the last one began as that took;
  // end() then forgets that text had arrived.
  QVERIFY(turns.end() >= 7 * taken);
  (void)turns.begin(little);
  QTest::qSleep(taken);
  QVERIFY(turns.end() <= frameLength - taken);
}

void TestPaneTurns::aSlowTurnStopsThePaneForNoSeconds() {
  PaneTurns turns;
  (void)turns.textComes();
  (void)turns.begin(little);
  QTest::qSleep(60);
  QVERIFY(turns.end() <= 40);
}

KELMORA_TEST_MAIN(TestPaneTurns)
#include "tst_paneturns.moc"

#include <QTest>

#include "support/ScratchMain.h"
#include "terminal/view/PaneTurns.h"

namespace {

/// Characters a millisecond before anything is learnt.
constexpr double firstRate = 1000;
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
  void theRateIsLearntFromTurnsThatTell();
};

void TestPaneTurns::textAfterAPauseIsShownAtOnce() {
  PaneTurns turns;
  QCOMPARE(turns.textComes(), 0);
  turns.begin();
  QTest::qSleep(frameLength + 1);
  QCOMPARE(turns.textComes(), 0);
}

void TestPaneTurns::textAfterATurnWaitsForTheEndOfItsFrame() {
  // Again where the machine paused between the two calls.
  for (int attempt = 0; attempt < 100; ++attempt) {
    PaneTurns turns;
    QElapsedTimer timer;
    timer.start();
    turns.begin();
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
  QTest::addColumn<bool>("skipped");
  QTest::addColumn<double>("milliseconds");
  QTest::newRow("half a frame of little") << true << little << false << 8.0;
  QTest::newRow("half a frame of little that stands") << false << little << false << 8.0;
  QTest::newRow("a whole frame to catch up with much") << false << much << false << 16.0;
  QTest::newRow("a glimpse of much while more comes") << true << much << false << 2.0;
  QTest::newRow("a glimpse of what others were dropped before") << true << little << true << 2.0;
}

void TestPaneTurns::aTurnTakesWhatFits() {
  QFETCH(bool, arriving);
  QFETCH(qsizetype, bytes);
  QFETCH(bool, skipped);
  QFETCH(double, milliseconds);
  PaneTurns turns;
  if (arriving)
    (void)turns.textComes();
  turns.begin();
  QCOMPARE(turns.characters({.bytes = bytes, .skipped = skipped}), milliseconds * firstRate);
}

void TestPaneTurns::aFloodWaitsLongerForTheNextTurn() {
  constexpr int taken = 10;
  PaneTurns turns;
  (void)turns.textComes();
  turns.begin();
  QTest::qSleep(taken);
  // Eight times what the turn took, that included; what came is forgotten then.
  QVERIFY(turns.end() >= 7 * taken);
  turns.begin();
  QTest::qSleep(taken);
  QVERIFY(turns.end() <= frameLength - taken);
}

void TestPaneTurns::aSlowTurnStopsThePaneForNoSeconds() {
  PaneTurns turns;
  (void)turns.textComes();
  turns.begin();
  QTest::qSleep(60);
  QVERIFY(turns.end() <= 40);
}

void TestPaneTurns::theRateIsLearntFromTurnsThatTell() {
  PaneTurns turns;
  turns.begin();
  turns.learn(1000, 1);
  QCOMPARE(turns.characters({.bytes = little}), 8 * firstRate);
  // A tenth of the rate, of which a quarter is believed at once.
  turns.learn(10000, 100'000'000);
  QCOMPARE(turns.characters({.bytes = little}), 8 * (firstRate - 900.0 / 4));
}

KELMORA_TEST_MAIN(TestPaneTurns)
#include "tst_paneturns.moc"

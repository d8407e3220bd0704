#include <QTest>

#include "support/ScratchMain.h"
#include "terminal/core/InputHistory.h"

using namespace kelmora;
using namespace kelmora::terminal;

class TestInputHistory : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void records_data();
  void records();
  void aDistinctLineBeyondTheLimitDropsTheOldest();
  void olderOnAnEmptyHistoryIsNothing();
  void newerOnAnEmptyHistoryIsNothing();
  void olderStopsAtTheOldest();
  void newerPastTheMostRecentEmptiesTheBar();
  void newerWithoutBrowsingEmptiesTheBar();
  void endingTheBrowsingStartsAgainAtTheMostRecent();
};

void TestInputHistory::records_data() {
  QTest::addColumn<QStringList>("typed");
  QTest::addColumn<QStringList>("kept");
  QTest::newRow("the most recent line comes first")
      << QStringList{"a", "b"} << QStringList{"b", "a"};
  QTest::newRow("the same line twice in a row is stored once")
      << QStringList{"a", "a"} << QStringList{"a"};
  QTest::newRow("an older duplicate is kept")
      << QStringList{"A", "B", "A"} << QStringList{"A", "B", "A"};
  QTest::newRow("lines that differ in case are two lines")
      << QStringList{"a", "A"} << QStringList{"A", "a"};
  QTest::newRow("an empty line is not stored") << QStringList{"a", ""} << QStringList{"a"};
  QTest::newRow("an empty line between two equal ones does not part them")
      << QStringList{"a", "", "a"} << QStringList{"a"};
  QTest::newRow("a blank is a line") << QStringList{" "} << QStringList{" "};
}

void TestInputHistory::records() {
  QFETCH(const QStringList, typed);
  QFETCH(const QStringList, kept);
  InputHistory history;
  for (const QString& line : typed)
    history.record(line);
  QCOMPARE(history.inputHistory(), kept);
  QCOMPARE(history.historyPosition(), -1);
}

void TestInputHistory::aDistinctLineBeyondTheLimitDropsTheOldest() {
  InputHistory history;
  for (int i = 0; i < 256; ++i)
    history.record(QString::number(i));
  QCOMPARE(history.inputHistory().size(), 256);
  QCOMPARE(history.inputHistory().last(), QString("0"));
  history.record("one more");
  QCOMPARE(history.inputHistory().size(), 256);
  QCOMPARE(history.inputHistory().first(), QString("one more"));
  QCOMPARE(history.inputHistory().last(), QString("1"));
}

void TestInputHistory::olderOnAnEmptyHistoryIsNothing() {
  InputHistory history;
  QVERIFY(!history.historyOlder());
  QCOMPARE(history.historyPosition(), -1);
}

void TestInputHistory::newerOnAnEmptyHistoryIsNothing() {
  InputHistory history;
  QVERIFY(!history.historyNewer());
  QCOMPARE(history.historyPosition(), -1);
}

void TestInputHistory::olderStopsAtTheOldest() {
  InputHistory history;
  history.record("first");
  history.record("second");
  QCOMPARE(*history.historyOlder(), QString("second"));
  QCOMPARE(*history.historyOlder(), QString("first"));
  QCOMPARE(*history.historyOlder(), QString("first"));
  QCOMPARE(history.historyPosition(), 1);
}

void TestInputHistory::newerPastTheMostRecentEmptiesTheBar() {
  InputHistory history;
  history.record("first");
  history.record("second");
  QCOMPARE(*history.historyOlder(), QString("second"));
  QCOMPARE(*history.historyOlder(), QString("first"));
  QCOMPARE(*history.historyNewer(), QString("second"));
  QCOMPARE(*history.historyNewer(), QString());
  QCOMPARE(history.historyPosition(), -1);
  QCOMPARE(*history.historyOlder(), QString("second"));
}

void TestInputHistory::newerWithoutBrowsingEmptiesTheBar() {
  InputHistory history;
  history.record("line");
  QCOMPARE(*history.historyNewer(), QString());
  QCOMPARE(history.historyPosition(), -1);
}

void TestInputHistory::endingTheBrowsingStartsAgainAtTheMostRecent() {
  InputHistory history;
  history.record("first");
  history.record("second");
  QCOMPARE(*history.historyOlder(), QString("second"));
  QCOMPARE(*history.historyOlder(), QString("first"));
  history.endBrowsing();
  QCOMPARE(*history.historyOlder(), QString("second"));
}

KELMORA_TEST_MAIN(TestInputHistory)
#include "tst_inputhistory.moc"

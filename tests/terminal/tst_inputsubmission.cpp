#include <QTest>

#include "support/ScratchMain.h"
#include "terminal/core/InputSubmission.h"

using namespace kelmora;
using namespace kelmora::terminal;

using Route = InputSubmission::Route;
using Afterwards = InputSubmission::Afterwards;

class TestInputSubmission : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void splits_data();
  void splits();
  void keepsOrEmptiesTheBar_data();
  void keepsOrEmptiesTheBar();
  void historyFollowsTheEchoOfTheStart_data();
  void historyFollowsTheEchoOfTheStart();
  void enterEndsTheBrowsing();
  void anEditedEntryBecomesANewOne();
  void theWholeLineIsRecordedNotItsPieces();
};

void TestInputSubmission::splits_data() {
  QTest::addColumn<QString>("line");
  QTest::addColumn<bool>("splitInput");
  QTest::addColumn<QString>("splitString");
  QTest::addColumn<QStringList>("actions");
  QTest::addColumn<bool>("asList");

  QTest::newRow("a line is cut at every separator")
      << "kill orc;l" << true << ";" << QStringList{"kill orc", "l"} << true;
  QTest::newRow("empty pieces are kept")
      << "a;;b" << true << ";" << QStringList{"a", "", "b"} << true;
  QTest::newRow("a separator at either end leaves an empty piece")
      << ";a;" << true << ";" << QStringList{"", "a", ""} << true;
  QTest::newRow("blanks around a separator stay with their piece")
      << "a ; b" << true << ";" << QStringList{"a ", " b"} << true;
  QTest::newRow("an empty line is one empty action")
      << "" << true << ";" << QStringList{""} << true;
  QTest::newRow("a separator of several characters is matched whole")
      << "a;b;;c" << true << ";;" << QStringList{"a;b", "c"} << true;
  QTest::newRow("a letter as separator minds its case")
      << "aXbxc" << true << "x" << QStringList{"aXb", "c"} << true;
  QTest::newRow("an empty separator leaves the line whole, still as a list")
      << "a;b" << true << "" << QStringList{"a;b"} << true;
  QTest::newRow("with splitting off the line goes whole to the interpreter")
      << "a;b" << false << ";" << QStringList{"a;b"} << false;
  QTest::newRow("with splitting off an empty line goes too")
      << "" << false << ";" << QStringList{""} << false;
}

void TestInputSubmission::splits() {
  QFETCH(const QString, line);
  QFETCH(const bool, splitInput);
  QFETCH(const QString, splitString);
  QFETCH(const QStringList, actions);
  QFETCH(const bool, asList);
  InputHistory history;
  const InputSubmission submission =
      submitInput(line, {.splitInput = splitInput, .splitString = splitString}, history);
  QCOMPARE(submission.actions, actions);
  QCOMPARE(submission.route, asList ? Route::ActionList : Route::WholeLine);
}

void TestInputSubmission::keepsOrEmptiesTheBar_data() {
  QTest::addColumn<bool>("echoEnabled");
  QTest::addColumn<bool>("displayLocalEcho");
  QTest::addColumn<bool>("flushInput");
  QTest::addColumn<bool>("selects");
  for (const bool echoEnabled : {false, true})
    for (const bool displayLocalEcho : {false, true})
      for (const bool flushInput : {false, true})
        QTest::addRow("echo at the start %s, echo now %s, flushing %s", echoEnabled ? "on" : "off",
                      displayLocalEcho ? "on" : "off", flushInput ? "on" : "off")
            << echoEnabled << displayLocalEcho << flushInput
            << (echoEnabled && displayLocalEcho && !flushInput);
}

void TestInputSubmission::keepsOrEmptiesTheBar() {
  QFETCH(const bool, echoEnabled);
  QFETCH(const bool, displayLocalEcho);
  QFETCH(const bool, flushInput);
  QFETCH(const bool, selects);
  InputHistory history;
  const InputSubmission submission = submitInput("line",
                                                 {.echoEnabled = echoEnabled,
                                                  .displayLocalEcho = displayLocalEcho,
                                                  .flushInput = flushInput,
                                                  .splitString = ";"},
                                                 history);
  QCOMPARE(submission.afterwards, selects ? Afterwards::SelectAll : Afterwards::EmptyBar);
}

void TestInputSubmission::historyFollowsTheEchoOfTheStart_data() {
  QTest::addColumn<bool>("echoEnabled");
  QTest::addColumn<bool>("displayLocalEcho");
  QTest::addColumn<QStringList>("kept");
  QTest::newRow("echo on all along") << true << true << QStringList{"line"};
  QTest::newRow("switched off during play, lines are still recorded")
      << true << false << QStringList{"line"};
  QTest::newRow("switched on during play, nothing is recorded") << false << true << QStringList{};
  QTest::newRow("echo off all along") << false << false << QStringList{};
}

void TestInputSubmission::historyFollowsTheEchoOfTheStart() {
  QFETCH(const bool, echoEnabled);
  QFETCH(const bool, displayLocalEcho);
  QFETCH(const QStringList, kept);
  InputHistory history;
  const auto submission = submitInput(
      "line", {.echoEnabled = echoEnabled, .displayLocalEcho = displayLocalEcho}, history);
  QCOMPARE(submission.actions, QStringList{"line"});
  QCOMPARE(history.inputHistory(), kept);
}

void TestInputSubmission::enterEndsTheBrowsing() {
  InputHistory history;
  history.record("a");
  QVERIFY(history.historyOlder());
  QCOMPARE(history.historyPosition(), 0);
  const auto submission = submitInput("a", {.echoEnabled = false}, history);
  QCOMPARE(submission.actions, QStringList{"a"});
  QCOMPARE(history.historyPosition(), -1);
}

void TestInputSubmission::anEditedEntryBecomesANewOne() {
  InputHistory history;
  history.record("first");
  history.record("second");
  QVERIFY(history.historyOlder());
  QCOMPARE(*history.historyOlder(), QString("first"));
  const auto submission = submitInput("first, edited", {}, history);
  QCOMPARE(submission.actions.size(), 1);
  QCOMPARE(history.inputHistory(), (QStringList{"first, edited", "second", "first"}));
}

void TestInputSubmission::theWholeLineIsRecordedNotItsPieces() {
  InputHistory history;
  const auto submission = submitInput("a;b", {.splitString = ";"}, history);
  QCOMPARE(submission.actions.size(), 2);
  QCOMPARE(history.inputHistory(), QStringList{"a;b"});
}

KELMORA_TEST_MAIN(TestInputSubmission)
#include "tst_inputsubmission.moc"

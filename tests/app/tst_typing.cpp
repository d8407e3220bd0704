#include <QApplication>

#include "PlayWindow.h"
#include "support/ScratchMain.h"

/// A typed line on its way to the server, and its echo.
class TestTyping : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aLineGoesOutWithItsLineEnd();
  void linesOnTheWire_data();
  void linesOnTheWire();
  void theEchoIsYellowOnBlack();
  void theEchoNeedsBothSwitches_data();
  void theEchoNeedsBothSwitches();
  void theLineStaysSelected();
  void flushingEmptiesTheBar();
  void upAndDownBrowse();
  void withoutEchoAtTheStartNothingIsRemembered();
  void toolbarShortcuts();
  void controlJAndPAreTheBarsOnceTheirActionsAreOff();
  void controlEExportsAlthoughTheEditorWouldTakeIt();
  void slashLinesThatNameNoCommandGoOut();
};

void TestTyping::aLineGoesOutWithItsLineEnd() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  play.type("look");
  QTRY_COMPARE(server.received(), QByteArray("look\r\n"));
}

void TestTyping::linesOnTheWire_data() {
  QTest::addColumn<QString>("typed");
  QTest::addColumn<PlayWindow::Options>("options");
  QTest::addColumn<QByteArray>("wire");
  const PlayWindow::Options defaults;
  QTest::newRow("the pieces of a split line leave in order")
      << "kill orc;l" << defaults << QByteArray("kill orc\r\nl\r\n");
  QTest::newRow("an empty piece is an empty line")
      << "a;;b" << defaults << QByteArray("a\r\n\r\nb\r\n");
  QTest::newRow("Enter alone sends an empty line") << "" << defaults << QByteArray("\r\n");
  QTest::newRow("with splitting off the line is whole")
      << "a;b" << PlayWindow::Options{{"splitInput", 0}} << QByteArray("a;b\r\n");
  QTest::newRow("another separator")
      << "a;b//c" << PlayWindow::Options{{"splitString", "//"}} << QByteArray("a;b\r\nc\r\n");
  QTest::newRow("an empty separator leaves the line whole")
      << "a;b" << PlayWindow::Options{{"splitString", ""}} << QByteArray("a;b\r\n");
  QTest::newRow("text leaves as UTF-8")
      << QString::fromUtf8("grüß \u20ac") << defaults << QByteArray("grüß \u20ac\r\n");
  QTest::newRow("the echo's switch changes nothing on the wire")
      << "quiet" << PlayWindow::Options{{"displayLocalEcho", 0}} << QByteArray("quiet\r\n");
}

void TestTyping::linesOnTheWire() {
  QFETCH(const QString, typed);
  QFETCH(const PlayWindow::Options, options);
  QFETCH(const QByteArray, wire);
  GameServer server;
  PlayWindow play(server.port(), options);
  QVERIFY(play.connectTo(server));
  play.bar->setText(typed);
  QTest::keyClick(play.bar, Qt::Key_Return);
  QTRY_COMPARE(server.received(), wire);
}

void TestTyping::theEchoIsYellowOnBlack() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  play.type("shout;whisper");
  QVERIFY(play.text().endsWith("shout\nwhisper\n"));
  for (const char* word : {"shout", "whisper"}) {
    QCOMPARE(play.formatOf(word).foreground().color(), QColor(Qt::yellow));
    QCOMPARE(play.formatOf(word).background().color(), QColor(Qt::black));
  }
}

void TestTyping::theEchoNeedsBothSwitches_data() {
  QTest::addColumn<bool>("atTheStart");
  QTest::addColumn<bool>("now");
  QTest::addColumn<bool>("echoes");
  QTest::newRow("on at the start and now: echoed") << true << true << true;
  QTest::newRow("switched off during play: not echoed") << true << false << false;
  QTest::newRow("switched on during play: not echoed before the next start")
      << false << true << false;
  QTest::newRow("off: not echoed") << false << false << false;
}

void TestTyping::theEchoNeedsBothSwitches() {
  QFETCH(const bool, atTheStart);
  QFETCH(const bool, now);
  QFETCH(const bool, echoes);
  PlayWindow play(5000, {{"displayLocalEcho", atTheStart ? 1 : 0}});
  play.profile.settings.displayLocalEcho = now;
  play.type("line");
  QCOMPARE(play.text(), echoes ? QString("line\n") : QString());
}

void TestTyping::theLineStaysSelected() {
  PlayWindow play(5000);
  play.type("again");
  QCOMPARE(play.bar->text(), QString("again"));
  QCOMPARE(play.bar->selectedText(), QString("again"));
  QTest::keyClicks(play.bar, "new");
  QCOMPARE(play.bar->text(), QString("new"));
}

void TestTyping::flushingEmptiesTheBar() {
  PlayWindow play(5000, {{"flushInput", 1}});
  play.type("gone");
  QCOMPARE(play.bar->text(), QString());
}

void TestTyping::upAndDownBrowse() {
  PlayWindow play(5000);
  QTest::keyClick(play.bar, Qt::Key_Up);
  QCOMPARE(play.bar->text(), QString());
  play.type("one");
  play.type("two");
  play.type("two");
  const auto press = [&](Qt::Key key) {
    QTest::keyClick(play.bar, key);
    return play.bar->text();
  };
  QCOMPARE(press(Qt::Key_Up), QString("two"));
  QCOMPARE(press(Qt::Key_Up), QString("one"));
  QCOMPARE(press(Qt::Key_Up), QString("one"));
  QCOMPARE(press(Qt::Key_Down), QString("two"));
  QCOMPARE(press(Qt::Key_Down), QString());
  QCOMPARE(press(Qt::Key_Down), QString());
  QCOMPARE(press(Qt::Key_Up), QString("two"));
}

void TestTyping::withoutEchoAtTheStartNothingIsRemembered() {
  PlayWindow play(5000, {{"displayLocalEcho", 0}});
  play.type("one");
  QCOMPARE(play.bar->text(), QString());
  play.profile.settings.displayLocalEcho = true;
  play.type("two");
  QCOMPARE(play.bar->text(), QString());
  QTest::keyClick(play.bar, Qt::Key_Up);
  QCOMPARE(play.bar->text(), QString());
}

void TestTyping::toolbarShortcuts() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  QTest::keyClick(play.bar, Qt::Key_J, Qt::ControlModifier);
  QTRY_COMPARE(play.connectionStates(), QString("-+-"));
  QTest::keyClick(play.bar, Qt::Key_D, Qt::ControlModifier);
  QTRY_COMPARE(play.connectionStates(), QString("+-+"));
}

void TestTyping::controlJAndPAreTheBarsOnceTheirActionsAreOff() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  play.type("remembered");

  int proxySettingsAsked = 0;
  connect(play.actions.at(6), &QAction::triggered, this, [&] { ++proxySettingsAsked; });
  play.bar->clear();
  QTest::keyClick(play.bar, Qt::Key_P, Qt::ControlModifier);
  QCOMPARE(proxySettingsAsked, 1);
  QCOMPARE(play.bar->text(), QString());

  QVERIFY(play.connectTo(server));
  QTest::keyClick(play.bar, Qt::Key_P, Qt::ControlModifier);
  QCOMPARE(proxySettingsAsked, 1);
  QCOMPARE(play.bar->text(), QString("remembered"));
  QCOMPARE(play.bar->cursorPosition(), 10);
  QTest::keyClick(play.bar, Qt::Key_J, Qt::ControlModifier);
  QCOMPARE(play.bar->cursorPosition(), 9);
  QCOMPARE(play.connectionStates(), QString("-+-"));
}

void TestTyping::controlEExportsAlthoughTheEditorWouldTakeIt() {
  PlayWindow play(5000);
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  for (const int index : {2, 3, 4, 5, 7, 8, 9, 10}) {
    QAction* action = play.actions.at(index);
    action->disconnect();  // only that it is reached matters here
    int reached = 0;
    connect(action, &QAction::triggered, this, [&] { ++reached; });
    const QKeyCombination keys = action->shortcut()[0];
    QTest::keyClick(play.bar, keys.key(), keys.keyboardModifiers());
    QVERIFY2(reached == 1, qPrintable(action->text()));
    action->disconnect(this);
  }
}

void TestTyping::slashLinesThatNameNoCommandGoOut() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  play.type("/;//who;/wave");
  QVERIFY(play.text().endsWith("/\n/who\n/wave\n"));
  QTRY_COMPARE(server.received(), QByteArray("/\r\n/who\r\n/wave\r\n"));
}

KELMORA_GUI_TEST_MAIN(TestTyping)
#include "tst_typing.moc"

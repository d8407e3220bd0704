#include <QApplication>
#include <QNetworkProxy>
#include <QTextFrame>

#include "PlayWindow.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

/// Connecting and disconnecting as a player sees it: status lines in the pane,
/// the state of the toolbar.
class TestConnection : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy); }
  void connectsAndDisconnects();
  void theServersEndShowsOneLine();
  void aRefusedPortIsReported();
  void aHostThatDoesNotExistIsReported();
  void disconnectDuringAnAttemptEnablesConnectAtOnce();
  void statusLinesAreItalicAndWhite();
  void aLongHostNameIsCut();
  void aStatusLineWithItsColourHas1023Characters_data();
  void aStatusLineWithItsColourHas1023Characters();
  void aHostNameOfNestedTablesIsShownInTime();
  void theSameWindowConnectsAgain();
  void sendingWithoutAConnectionIsSilent();
  void connectingGivesTheBarTheFocus();
  void whatCameBeforeADisconnectIsShownAndReachesTheTriggers();
  void aDisconnectWithNothingOnItsWayShowsOneLine();
  void anErrorPutsTheCaretAtTheEnd_data();
  void anErrorPutsTheCaretAtTheEnd();
};

void TestConnection::connectsAndDisconnects() {
  GameServer server;
  PlayWindow play(server.port());
  QCOMPARE(play.connectionStates(), QString("+-+"));
  play.window->connectToServer();
  QCOMPARE(play.connectionStates(), QString("--+"));
  const QString attempt =
      QStringLiteral("Attempting to connect to 127.0.0.1 on port %1...").arg(server.port());
  QCOMPARE(play.text(), attempt);
  QTRY_COMPARE(play.connectionStates(), QString("-+-"));
  QCOMPARE(play.text(), attempt + "\nConnected to host!");
  play.window->disconnectFromServer();
  QCOMPARE(play.actions.at(0)->isEnabled(), true);
  QCOMPARE(play.actions.at(1)->isEnabled(), false);
  QTRY_COMPARE(play.connectionStates(), QString("+-+"));
  QCOMPARE(play.text(), attempt + "\nConnected to host!\nDisconnected from host!");
}

void TestConnection::theServersEndShowsOneLine() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.peer()->close();
  QTRY_COMPARE(play.connectionStates(), QString("+-+"));
  QCOMPARE(play.lastLine(), QString("Disconnected from host!"));
  QVERIFY(!play.text().contains("Error"));
}

void TestConnection::aRefusedPortIsReported() {
  GameServer server;
  const quint16 port = server.port();
  server.stopListening();
  PlayWindow play(port);
  play.window->connectToServer();
  QTRY_COMPARE(play.lastLine(), QString("Error: Connection refused by the peer"));
  QCOMPARE(play.connectionStates(), QString("+-+"));
}

void TestConnection::aHostThatDoesNotExistIsReported() {
  PlayWindow play(5000, {{"hostName", "nowhere.invalid"}});
  play.window->connectToServer();
  QTRY_COMPARE_WITH_TIMEOUT(play.lastLine(), QString("Error: Host not found"), 30000);
  QCOMPARE(play.connectionStates(), QString("+-+"));
}

void TestConnection::disconnectDuringAnAttemptEnablesConnectAtOnce() {
  // A proxy that takes the connection and never answers keeps the attempt
  // under way for as long as the test wants.
  GameServer silentProxy;
  PlayWindow play(5000, {{"hostName", "0.0.0.0"},
                         {"useProxyServer", 1},
                         {"proxyType", 1},
                         {"proxyHostName", "127.0.0.1"},
                         {"proxyPortNumber", QString::number(silentProxy.port())}});
  play.window->connectToServer();
  QTRY_VERIFY(!silentProxy.received().isEmpty());
  QCOMPARE(play.connectionStates(), QString("--+"));
  play.window->disconnectFromServer();
  QCOMPARE(play.connectionStates(), QString("+-+"));
  QTest::qWait(100);
  QCOMPARE(play.text(), QString("Attempting to connect to 0.0.0.0 on port 5000..."));
}

void TestConnection::statusLinesAreItalicAndWhite() {
  GameServer server;
  PlayWindow play(server.port(), {{"white", "#ABCDEF"}});
  QVERIFY(play.connectTo(server));
  QVERIFY(play.formatOf("Connected to host!").fontItalic());
  QCOMPARE(play.formatOf("Connected to host!").foreground().color(), QColor("#ABCDEF"));
}

void TestConnection::aLongHostNameIsCut() {
  PlayWindow play(5000, {{"hostName", QString(100000, 'h')}});
  play.window->connectToServer();
  QVERIFY(play.text().startsWith("Attempting to connect to hhhh"));
  QVERIFY(play.text().size() < 1024);
  QVERIFY(play.text().contains("on port 5000..."));
}

void TestConnection::aStatusLineWithItsColourHas1023Characters_data() {
  QTest::addColumn<QString>("white");
  QTest::addColumn<int>("shown");
  // <span style="color:WHITE"><i>Attempting to connect to NAME on port 5000...</i>
  QTest::newRow("the usual colour text") << "#ABCDEF" << 947;
  QTest::newRow("a shorter one leaves more for the name") << "red" << 951;
}

void TestConnection::aStatusLineWithItsColourHas1023Characters() {
  QFETCH(const QString, white);
  QFETCH(const int, shown);
  PlayWindow play(5000, {{"hostName", QString(2000, 'h')}, {"white", white}});
  play.window->connectToServer();
  QCOMPARE(play.text(),
           QStringLiteral("Attempting to connect to %1 on port 5000...").arg(QString(shown, 'h')));
}

void TestConnection::aHostNameOfNestedTablesIsShownInTime() {
  PlayWindow play(5000, {{"hostName", "<b>host</b>" + QString("<table><tr><td>").repeated(60)}});
  play.window->connectToServer();
  QVERIFY(play.text().startsWith("Attempting to connect to host"));
  QVERIFY(play.text().contains("on port 5000..."));
  QVERIFY(settled(*play.pane).document()->rootFrame()->childFrames().isEmpty());
}

void TestConnection::theSameWindowConnectsAgain() {
  GameServer server;
  PlayWindow play(server.port());
  for (int round = 0; round < 3; ++round) {
    QVERIFY(play.connectTo(server));
    server.send("round " + QByteArray::number(round) + "\r\n");
    QTRY_VERIFY(play.text().contains(QStringLiteral("round %1").arg(round)));
    if (round == 1) {
      server.peer()->close();
    } else {
      play.window->disconnectFromServer();
    }
    QTRY_COMPARE(play.connectionStates(), QString("+-+"));
  }
}

void TestConnection::sendingWithoutAConnectionIsSilent() {
  PlayWindow play(5000);
  QTest::failOnWarning(QRegularExpression(".*"));
  play.type("hello");
  QCOMPARE(play.text(), QString("hello\n"));
  QCOMPARE(play.connectionStates(), QString("+-+"));
}

void TestConnection::connectingGivesTheBarTheFocus() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(QTest::qWaitForWindowActive(play.window.get()));
  play.pane->setFocus();
  play.window->connectToServer();
  QVERIFY(play.bar->hasFocus());
  QTRY_COMPARE(play.connectionStates(), QString("-+-"));
  play.pane->setFocus();
  play.window->disconnectFromServer();
  QVERIFY(play.bar->hasFocus());
}

void TestConnection::whatCameBeforeADisconnectIsShownAndReachesTheTriggers() {
  QFile triggers("triggers.txt");
  QVERIFY(triggers.open(QIODevice::WriteOnly));
  triggers.write("\ntrigger \"last words\"\nanswer\n/trigger\n");
  triggers.close();
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  // On its way or arrived, but the client's event loop has not seen it.
  server.send(QByteArray("a line\r\n").repeated(2000) + "last words\r\n");
  play.window->disconnectFromServer();
  QCOMPARE(play.text().count("a line"), 2000);
  QVERIFY(play.text().contains("last words"));
  QTRY_COMPARE(play.lastLine(), QString("Disconnected from host!"));
  QVERIFY(play.text().indexOf("last words") < play.text().indexOf("Disconnected"));
  QTRY_COMPARE(server.received(), QByteArray("answer\r\n"));
  triggers.remove();
}

void TestConnection::aDisconnectWithNothingOnItsWayShowsOneLine() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  const QString before = play.text();
  play.window->disconnectFromServer();
  QCOMPARE(play.text(), before + "\nDisconnected from host!");
  QCOMPARE(play.connectionStates(), QString("+-+"));
}

void TestConnection::anErrorPutsTheCaretAtTheEnd_data() {
  QTest::addColumn<QAbstractSocket::SocketError>("error");
  QTest::newRow("one that is told") << QAbstractSocket::HostNotFoundError;
  QTest::newRow("one that goes unsaid") << QAbstractSocket::RemoteHostClosedError;
}

void TestConnection::anErrorPutsTheCaretAtTheEnd() {
  QFETCH(const QAbstractSocket::SocketError, error);
  PlayWindow play(1);
  for (int i = 0; i < 200; ++i)
    play.pane->printInfo("a line");
  QTextCursor caret(settled(*play.pane).document());
  caret.setPosition(5);
  play.pane->setTextCursor(caret);
  QVERIFY(!settled(*play.pane).textCursor().atEnd());
  QVERIFY(QMetaObject::invokeMethod(play.window.get(), "displaySocketError",
                                    Q_ARG(QAbstractSocket::SocketError, error)));
  QVERIFY(settled(*play.pane).textCursor().atEnd());
  QVERIFY(play.pane->viewport()->rect().contains(play.pane->cursorRect()));
}

KELMORA_GUI_TEST_MAIN(TestConnection)
#include "tst_connection.moc"

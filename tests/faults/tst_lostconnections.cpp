#include <QApplication>
#include <QNetworkProxy>
#include <QRandomGenerator>
#include <atomic>
#include <vector>

#include "RawServer.h"
#include "app/PlayWindow.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

using namespace kelmora;
using namespace kelmora::app;

namespace {

constexpr int rounds = 5;

/// What the server and the player are at when the connection ends.
struct State {
  const char* name;
  QNetworkProxy::ProxyType proxy = QNetworkProxy::NoProxy;
  /// The server's way there, in its own thread.
  void (*lead)(int connection) = [](int) {};
  /// The player's, once he is connected.
  void (*play)(PlayWindow& play) = nullptr;
};

std::atomic<bool> playerIsReady = false;

void waitForPlayer() {
  for (int i = 0; i < 5000 && !playerIsReady; ++i)
    ::usleep(1000);
}

void sendLongScript(PlayWindow& play) {
  play.type("/repeat 512, /repeat 16, say a line of a long script");
}

void answerSocks(int connection, const QByteArray& answer) {
  RawServer::receive(connection, 3);
  RawServer::send(connection, QByteArray("\x05\x00", 2));
  RawServer::receive(connection, 10);
  RawServer::send(connection, answer);
}

void answerHttp(int connection, const QByteArray& answer) {
  RawServer::receiveUntil(connection, "\r\n\r\n");
  RawServer::send(connection, answer);
}

const QByteArray socksAgrees("\x05\x00\x00\x01\x7f\x00\x00\x01\x10\x00", 10);
const QByteArray httpAgrees("HTTP/1.0 200 Connection established\r\n\r\n");

const std::vector<State>& states() {
  constexpr auto direct = QNetworkProxy::NoProxy;
  constexpr auto socks = QNetworkProxy::Socks5Proxy;
  constexpr auto http = QNetworkProxy::HttpProxy;
  static const std::vector<State> all{
      {"as soon as it stands"},
      {"while nothing is said", direct,
       [](int connection) { RawServer::send(connection, "ready\r\n"); }},
      {"in a flood", direct,
       [](int connection) {
         RawServer::send(connection,
                         QByteArray("\x1b[1;32mA line\x1b[0m of a flood, http://a.example/x\r\n")
                             .repeated(3000));
       }},
      {"within an escape sequence", direct,
       [](int connection) { RawServer::send(connection, "text \x1b[1;3"); }},
      {"behind an escape", direct,
       [](int connection) { RawServer::send(connection, "text \x1b"); }},
      {"within a tag", direct,
       [](int connection) { RawServer::send(connection, "text <a href='http://a.exa"); }},
      {"within a telnet command", direct,
       [](int connection) { RawServer::send(connection, "text \xff\xfb"); }},
      {"within a character", direct,
       [](int connection) { RawServer::send(connection, "text \xe2\x94"); }},
      {"while triggers answer", direct,
       [](int connection) {
         RawServer::send(connection, QByteArray("ask\r\n").repeated(2000));
         RawServer::receive(connection, 200);
       }},
      {"while a long script is sent", direct,
       [](int connection) { RawServer::receive(connection, 2000); }, sendLongScript},
      {"while Disconnect still sends", direct, [](int) { waitForPlayer(); },
       [](PlayWindow& play) {
         sendLongScript(play);
         play.window->disconnectFromServer();
       }},
      {"while a line is typed", direct,
       [](int connection) { RawServer::send(connection, "ready\r\n"); },
       [](PlayWindow& play) { play.type("look;look"); }},
      {"before the SOCKS proxy answers", socks,
       [](int connection) { RawServer::receive(connection, 3); }},
      {"within the SOCKS proxy's answer", socks,
       [](int connection) { answerSocks(connection, socksAgrees.left(5)); }},
      {"through the SOCKS proxy", socks,
       [](int connection) { answerSocks(connection, socksAgrees + "ready\r\n"); }},
      {"before the HTTP proxy answers", http,
       [](int connection) { RawServer::receiveUntil(connection, "\r\n\r\n"); }},
      {"within the HTTP proxy's answer", http,
       [](int connection) { answerHttp(connection, httpAgrees.left(20)); }},
      {"through the HTTP proxy", http,
       [](int connection) { answerHttp(connection, httpAgrees + "ready\r\n"); }},
  };
  return all;
}

/// No operation may end in a complaint of the toolkit. Its SOCKS proxy makes one
/// to itself, when it still has lines for a connection that has just ended.
void failOnComplaints(const State& state) {
  const QString itsOwn = state.proxy == QNetworkProxy::Socks5Proxy
                             ? QStringLiteral("|QIODevice::write \\(QTcpSocket\\): device not open")
                             : QString();
  QTest::failOnWarning(
      QRegularExpression(QStringLiteral("^(?!This plugin does not support%1)").arg(itsOwn)));
}

PlayWindow::Options optionsFor(const State& state, quint16 port) {
  PlayWindow::Options options{{"parseHtml", 1}, {"displayLocalEcho", 0}};
  // The toolkit asks no proxy for the loopback.
  if (state.proxy != QNetworkProxy::NoProxy)
    options += PlayWindow::Options{{"hostName", "0.0.0.0"},
                                   {"useProxyServer", 1},
                                   {"proxyType", int(state.proxy)},
                                   {"proxyHostName", "127.0.0.1"},
                                   {"proxyPortNumber", QString::number(port)}};
  return options;
}

}  // namespace

/// However a connection ends and whatever was under way: the window comes back
/// to where Connect works, and the next connection is a fresh one.
class TestLostConnections : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup() { QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy); }

  void theNextConnectionPlays_data();
  void theNextConnectionPlays();
  void aLookUpCanBeLeft();
  void aWindowThatGoesInTheMiddleEndsTheConnection_data();
  void aWindowThatGoesInTheMiddleEndsTheConnection();

 private:
  static void playAgain(PlayWindow& play);
};

void TestLostConnections::init() {
  writeFile("triggers.txt", "\ntrigger \"ask\"\nanswer one\nanswer two\n/trigger\n");
}

void TestLostConnections::playAgain(PlayWindow& play) {
  const QNetworkProxy proxy = QNetworkProxy::applicationProxy();
  const QString host = play.profile.settings.hostName;
  const int port = play.profile.settings.port;
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
  GameServer server;
  play.profile.settings.hostName = "127.0.0.1";
  play.profile.settings.port = server.port();
  QVERIFY(play.connectTo(server));
  server.send("Welcome back.\r\nA new game begins\r\n");
  QTRY_VERIFY(play.lastLine().isEmpty() && play.text().contains("new game begins"));
  play.type("alive");
  QTRY_VERIFY(!server.received().isEmpty());
  QTest::qWait(5);
  QCOMPARE(server.received(), QByteArray("alive\r\n"));
  play.window->disconnectFromServer();
  QTRY_COMPARE(play.connectionStates(), QString("+-+"));
  play.profile.settings.hostName = host;
  play.profile.settings.port = port;
  settled(*play.pane).clear();
  QNetworkProxy::setApplicationProxy(proxy);
}

void TestLostConnections::theNextConnectionPlays_data() {
  QTest::addColumn<int>("state");
  QTest::addColumn<End>("end");
  for (std::size_t i = 0; i < states().size(); ++i) {
    QTest::addRow("reset %s", states()[i].name) << static_cast<int>(i) << End::Reset;
    QTest::addRow("closed %s", states()[i].name) << static_cast<int>(i) << End::Close;
    QTest::addRow("half closed %s", states()[i].name) << static_cast<int>(i) << End::HalfClose;
  }
}

void TestLostConnections::theNextConnectionPlays() {
  QFETCH(int, state);
  QFETCH(End, end);
  const State& fault = states()[static_cast<std::size_t>(state)];
  failOnComplaints(fault);
  RawServer server([&](int connection) {
    fault.lead(connection);
    RawServer::end(connection, end);
  });
  PlayWindow play(server.port(), optionsFor(fault, server.port()));
  QRandomGenerator random(static_cast<quint32>(state));
  for (int round = 0; round < rounds; ++round) {
    playerIsReady = false;
    const int before = server.played();
    play.window->connectToServer();
    QVERIFY(!play.actions.at(0)->isEnabled());
    play.type("typed at once");
    if (fault.play) {
      QTRY_VERIFY(play.actions.at(1)->isEnabled() || play.actions.at(0)->isEnabled());
      fault.play(play);
    }
    QTest::qWait(static_cast<int>(random.bounded(3)));
    playerIsReady = true;
    QTRY_COMPARE_WITH_TIMEOUT(play.connectionStates(), QString("+-+"), 20000);
    // A connection that is reset before the toolkit has seen it stand is tried
    // again by the toolkit, so that there may be more of them.
    QTRY_VERIFY_WITH_TIMEOUT(server.played() > before, 20000);
    playAgain(play);
    if (QTest::currentTestFailed())
      return;
  }
}

void TestLostConnections::aLookUpCanBeLeft() {
  failOnComplaints(State{.name = nullptr});
  PlayWindow play(5000, {{"hostName", "nowhere.invalid"}, {"displayLocalEcho", 0}});
  for (int round = 0; round < rounds; ++round) {
    play.window->connectToServer();
    QCOMPARE(play.connectionStates(), QString("--+"));
    play.type("lost");
    play.window->disconnectFromServer();
    QCOMPARE(play.connectionStates(), QString("+-+"));
    playAgain(play);
    if (QTest::currentTestFailed())
      return;
  }
  // The window may go while somebody else still looks the name up.
  play.window->connectToServer();
}

void TestLostConnections::aWindowThatGoesInTheMiddleEndsTheConnection_data() {
  QTest::addColumn<int>("state");
  for (std::size_t i = 0; i < states().size(); ++i)
    QTest::newRow(states()[i].name) << static_cast<int>(i);
}

void TestLostConnections::aWindowThatGoesInTheMiddleEndsTheConnection() {
  QFETCH(int, state);
  const State& fault = states()[static_cast<std::size_t>(state)];
  failOnComplaints(fault);
  RawServer server([&](int connection) {
    fault.lead(connection);
    RawServer::receiveAll(connection);
  });
  for (int round = 1; round <= rounds; ++round) {
    playerIsReady = true;
    const int before = server.played();
    {
      PlayWindow play(server.port(), optionsFor(fault, server.port()));
      play.window->connectToServer();
      QTest::qWait(round);
      if (fault.play && play.actions.at(1)->isEnabled())
        fault.play(play);
      QTest::qWait(round);
    }
    QTRY_VERIFY_WITH_TIMEOUT(server.played() > before, 20000);
  }
}

KELMORA_GUI_TEST_MAIN(TestLostConnections)
#include "tst_lostconnections.moc"

#include <QPointer>
#include <QTcpServer>
#include <QTest>
#include <limits>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "Client.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::net;

namespace {

/// Listens with a queue that is already full, so that an attempt to connect
/// neither succeeds nor fails.
class FullBacklog {
 public:
  FullBacklog() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener_, generic, length) != 0 || ::listen(listener_, 0) != 0 ||
        ::getsockname(listener_, generic, &length) != 0)
      return;
    port_ = ntohs(address.sin_port);
    for (int i = 0; i < 8; ++i) {
      fillers_.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
      (void)::connect(fillers_.back(), generic, length);
    }
  }
  ~FullBacklog() {
    for (const int filler : fillers_)
      ::close(filler);
    ::close(listener_);
  }
  Q_DISABLE_COPY_MOVE(FullBacklog)

  [[nodiscard]] int port() const { return port_; }

  /// Empties the queue: an attempt that still goes on would now succeed.
  void drain() {
    for (int taken = 0; (taken = ::accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK)) >= 0;)
      fillers_.push_back(taken);
  }

 private:
  int listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
  int port_ = 0;
  std::vector<int> fillers_;
};

}  // namespace

class TestGameLinkConnecting : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void connectingTellsAndDisablesConnect();
  void aConnectionTellsAndSwitchesTheActions();
  void theServersEndIsOneLine();
  void theEndAloneSwitchesAllActions();
  void anErrorThatEndsNothingKeepsTheConnection();
  void afterAFailedAttemptTheSocketIsClosed();
  void theUsersDisconnectIsOneLine();
  void whatWasWrittenBeforeADisconnectStillArrives();
  void theSameSocketConnectsAgain();
  void disconnectingWithoutAConnectionOnlySwitchesTheActions();

  void aRefusedPortIsNamed();
  void anUnknownHostIsNamed_data();
  void anUnknownHostIsNamed();
  void everyErrorHasItsLine_data();
  void everyErrorHasItsLine();
  void aResetConnectionEndsLikeAClosedOne();

  void disconnectAbortsAnAttempt();
  void disconnectAbortsAHostLookup();
  void connectAgainstAnAttemptStartsAfresh();
  void connectAgainstAClosingConnectionStartsAfresh();
  void connectAgainstAConnectionStartsAfresh();
  void aSocketThatOutlivesItsLinkTellsNothingMore();

  void linesTypedDuringAnAttemptGoOutOnceItSucceeds();
  void linesTypedDuringAFailingAttemptAreLost_data();
  void linesTypedDuringAFailingAttemptAreLost();
  void linesTypedDuringAnAbortedAttemptAreLost();

  void theAttemptLine_data();
  void theAttemptLine();
  void theAttemptLineFitsTheRoomThatThereIs_data();
  void theAttemptLineFitsTheRoomThatThereIs();
  void thePortIsCutToSixteenBits_data();
  void thePortIsCutToSixteenBits();

 private:
  [[nodiscard]] bool connectClient();
  void type(const QString& line);
  void expectNothingKept();

  std::unique_ptr<QTcpServer> server_;
  std::unique_ptr<Client> client_;
};

void TestGameLinkConnecting::init() {
  // No operation may make the toolkit print a warning.
  QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
  server_ = std::make_unique<QTcpServer>();
  QVERIFY(server_->listen(QHostAddress::LocalHost));
  client_ = std::make_unique<Client>();
  client_->server.port = server_->serverPort();
}

void TestGameLinkConnecting::cleanup() {
  client_.reset();
  server_.reset();
}

bool TestGameLinkConnecting::connectClient() {
  client_->connectToServer();
  return QTest::qWaitFor([this] {
    return client_->host.enabledActions() == QStringLiteral("-D-") &&
           server_->hasPendingConnections();
  });
}

void TestGameLinkConnecting::type(const QString& line) {
  (void)client_->link.sendLine(line);
}

void TestGameLinkConnecting::expectNothingKept() {
  client_->server.hostName = QStringLiteral("127.0.0.1");
  client_->server.port = server_->serverPort();
  QVERIFY(connectClient());
  type(QStringLiteral("kept"));
  QTcpSocket* const peer = server_->nextPendingConnection();
  QTRY_VERIFY(peer->bytesAvailable() >= 6);
  QCOMPARE(peer->readAll(), QByteArray("kept\r\n"));
}

void TestGameLinkConnecting::connectingTellsAndDisablesConnect() {
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  client_->connectToServer();
  QCOMPARE(client_->host.lines, QStringList{client_->attempt()});
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("--P"));
  QCOMPARE(client_->host.focusings, 1);
}

void TestGameLinkConnecting::aConnectionTellsAndSwitchesTheActions() {
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), connectedText()}));
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("-D-"));
  QCOMPARE(client_->host.focusings, 1);
}

void TestGameLinkConnecting::theServersEndIsOneLine() {
  QVERIFY(connectClient());
  client_->host.lines.clear();
  server_->nextPendingConnection()->close();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedText()});
}

void TestGameLinkConnecting::theEndAloneSwitchesAllActions() {
  client_->host.actions = {{ConnectionAction::Connect, false},
                           {ConnectionAction::Disconnect, true},
                           {ConnectionAction::ProxySettings, false}};
  client_->link.clientDisconnected();
  QCOMPARE(client_->host.enabledActions(), QString("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedText()});
}

void TestGameLinkConnecting::anErrorThatEndsNothingKeepsTheConnection() {
  client_->connectToServer();
  QTRY_COMPARE(client_->socket.state(), QAbstractSocket::ConnectedState);
  client_->link.displaySocketError(QAbstractSocket::SocketTimeoutError);
  QCOMPARE(client_->socket.state(), QAbstractSocket::ConnectedState);
  QCOMPARE(client_->host.lines.last(), QString("<i>Error: Socket error 5</i>"));
  // Connect follows the error, though there is a connection.
  QCOMPARE(client_->host.enabledActions(), QString("CD-"));
}

void TestGameLinkConnecting::afterAFailedAttemptTheSocketIsClosed() {
  const RefusedPort port;
  client_->server.port = port.number();
  client_->connectToServer();
  QTRY_VERIFY(client_->host.lines.last().contains("refused"));
  // An open socket would keep what is written, and send it by a later connection.
  QVERIFY(!client_->socket.isOpen());
}

void TestGameLinkConnecting::theUsersDisconnectIsOneLine() {
  QVERIFY(connectClient());
  client_->host.lines.clear();
  client_->host.focusings = 0;
  QTcpSocket* const peer = server_->nextPendingConnection();
  client_->link.disconnectFromServer();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedText()});
  QCOMPARE(client_->host.focusings, 1);
  QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
}

void TestGameLinkConnecting::whatWasWrittenBeforeADisconnectStillArrives() {
  QVERIFY(connectClient());
  const QByteArray sent(30000000, 'x');
  client_->socket.write(sent);
  client_->link.disconnectFromServer();
  // The socket is still sending, so the connection has not ended yet.
  QCOMPARE(client_->socket.state(), QAbstractSocket::ClosingState);
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C--"));
  QCOMPARE(client_->host.lines.last(), connectedText());
  QTcpSocket* const peer = server_->nextPendingConnection();
  QByteArray received;
  connect(peer, &QTcpSocket::readyRead, this, [&] { received += peer->readAll(); });
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QTRY_COMPARE(received.size(), sent.size());
  QCOMPARE(client_->host.lines.last(), disconnectedText());
  peer->disconnect(this);
}

void TestGameLinkConnecting::theSameSocketConnectsAgain() {
  for (int i = 0; i < 3; ++i) {
    client_->host.lines.clear();
    QVERIFY(connectClient());
    QTcpSocket* const peer = server_->nextPendingConnection();
    if (i == 1)
      peer->close();
    else
      client_->link.disconnectFromServer();
    QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
    QCOMPARE(client_->host.lines,
             (QStringList{client_->attempt(), connectedText(), disconnectedText()}));
  }
}

void TestGameLinkConnecting::disconnectingWithoutAConnectionOnlySwitchesTheActions() {
  client_->link.disconnectFromServer();
  QCOMPARE(client_->host.lines, QStringList());
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.focusings, 1);
}

void TestGameLinkConnecting::aRefusedPortIsNamed() {
  const RefusedPort refused;
  client_->server.port = refused.number();
  client_->connectToServer();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines,
           (QStringList{client_->attempt(),
                        QStringLiteral("<i>Error: Connection refused by the peer</i>")}));

  client_->server.port = server_->serverPort();
  client_->host.lines.clear();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), connectedText()}));
}

void TestGameLinkConnecting::anUnknownHostIsNamed_data() {
  QTest::addColumn<QString>("name");
  QTest::newRow("a name that is nowhere") << "no-such-host.invalid";
  QTest::newRow("an empty name") << "";
  QTest::newRow("a blank") << " ";
  QTest::newRow("dots") << "...";
  QTest::newRow("a line end inside") << "a\nb";
  QTest::newRow("a hundred thousand letters") << QString(100000, u'a');
}

void TestGameLinkConnecting::anUnknownHostIsNamed() {
  QFETCH(QString, name);
  client_->server.hostName = name;
  client_->connectToServer();
  QTRY_COMPARE_WITH_TIMEOUT(client_->host.lines.size(), 2, 30000);
  QCOMPARE(client_->host.lines.last(), QStringLiteral("<i>Error: Host not found</i>"));
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
}

void TestGameLinkConnecting::everyErrorHasItsLine_data() {
  QTest::addColumn<int>("error");
  QTest::addColumn<QString>("line");
  QTest::newRow("a refusal is named")
      << 0 << QStringLiteral("<i>Error: Connection refused by the peer</i>");
  QTest::newRow("the server's end has no line") << 1 << QString();
  QTest::newRow("an unknown host is named") << 2 << QStringLiteral("<i>Error: Host not found</i>");
  const auto line = QStringLiteral("<i>Error: Socket error %1</i>");
  QTest::newRow("the lowest number is shown") << -1 << line.arg(-1);
  for (int code = 3; code <= 23; ++code)
    QTest::addRow("number %d is shown", code) << code << line.arg(code);
}

void TestGameLinkConnecting::everyErrorHasItsLine() {
  QFETCH(int, error);
  QFETCH(QString, line);
  for (const bool enabled : {false, true}) {
    client_->host.lines.clear();
    client_->host.cursorMoves = 0;
    for (auto& action : client_->host.actions)
      action.second = enabled;
    client_->link.displaySocketError(static_cast<QAbstractSocket::SocketError>(error));
    QCOMPARE(client_->host.lines, line.isNull() ? QStringList() : QStringList{line});
    QCOMPARE(client_->host.cursorMoves, 1);
    QCOMPARE(client_->host.enabledActions(),
             enabled ? QStringLiteral("CDP") : QStringLiteral("C--"));
  }
  QCOMPARE(client_->host.focusings, 0);
}

void TestGameLinkConnecting::aResetConnectionEndsLikeAClosedOne() {
  QVERIFY(connectClient());
  client_->host.lines.clear();
  QTcpSocket* const peer = server_->nextPendingConnection();
  const linger hard{1, 0};
  QCOMPARE(::setsockopt(static_cast<int>(peer->socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard,
                        sizeof hard),
           0);
  peer->abort();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedText()});
}

void TestGameLinkConnecting::disconnectAbortsAnAttempt() {
  FullBacklog backlog;
  client_->server.port = backlog.port();
  client_->connectToServer();
  QTest::qWait(50);
  QCOMPARE(client_->socket.state(), QAbstractSocket::ConnectingState);
  client_->link.disconnectFromServer();
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->socket.state(), QAbstractSocket::UnconnectedState);
  backlog.drain();
  QTest::qWait(1500);  // an attempt that still goes on tries again within a second
  QCOMPARE(client_->host.lines, QStringList{client_->attempt()});

  client_->host.lines.clear();
  client_->server.port = server_->serverPort();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), connectedText()}));
}

void TestGameLinkConnecting::disconnectAbortsAHostLookup() {
  client_->server.hostName = QStringLiteral("localhost");
  client_->connectToServer();
  QCOMPARE(client_->socket.state(), QAbstractSocket::HostLookupState);
  client_->link.disconnectFromServer();
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->socket.state(), QAbstractSocket::UnconnectedState);
  QTest::qWait(300);
  QCOMPARE(client_->host.lines, QStringList{client_->attempt()});
  QVERIFY(!server_->hasPendingConnections());
}

void TestGameLinkConnecting::connectAgainstAnAttemptStartsAfresh() {
  const FullBacklog backlog;
  client_->server.port = backlog.port();
  client_->connectToServer();
  const QString first = client_->attempt();
  client_->server.port = server_->serverPort();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{first, client_->attempt(), connectedText()}));
}

void TestGameLinkConnecting::connectAgainstAClosingConnectionStartsAfresh() {
  QVERIFY(connectClient());
  // The server reads nothing, so the socket cannot send all and keeps closing.
  QTcpSocket* const peer = server_->nextPendingConnection();
  peer->setReadBufferSize(1);
  client_->socket.write(QByteArray(20000000, 'x'));
  client_->link.disconnectFromServer();
  QTest::qWait(50);
  QCOMPARE(client_->socket.state(), QAbstractSocket::ClosingState);
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C--"));
  client_->host.lines.clear();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines,
           (QStringList{disconnectedText(), client_->attempt(), connectedText()}));
  QTcpSocket* const next = server_->nextPendingConnection();
  client_->socket.write("hello\r\n");
  QTRY_COMPARE(next->bytesAvailable(), qint64{7});
  QCOMPARE(next->readAll(), QByteArray("hello\r\n"));
}

void TestGameLinkConnecting::connectAgainstAConnectionStartsAfresh() {
  QVERIFY(connectClient());
  QTcpSocket* const peer = server_->nextPendingConnection();
  client_->host.lines.clear();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines,
           (QStringList{disconnectedText(), client_->attempt(), connectedText()}));
  QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
}

void TestGameLinkConnecting::aSocketThatOutlivesItsLinkTellsNothingMore() {
  // As when a window with a connection is closed: the socket, its child, goes last.
  RecordingHost host;
  auto window = std::make_unique<QObject>();
  QPointer<QTcpSocket> socket;
  int ends = 0;
  {
    GameLink link(*window, host);
    socket = &link.socket();
    connect(socket, &QTcpSocket::disconnected, this, [&ends] { ++ends; });
    link.connectToServer(client_->server);
    QTRY_COMPARE(socket->state(), QAbstractSocket::ConnectedState);
  }
  QVERIFY(socket);
  QCOMPARE(socket->parent(), window.get());
  window.reset();
  QVERIFY(!socket);
  QCOMPARE(ends, 0);
  QTRY_VERIFY(server_->hasPendingConnections());
  QTcpSocket* const peer = server_->nextPendingConnection();
  QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
}

void TestGameLinkConnecting::linesTypedDuringAnAttemptGoOutOnceItSucceeds() {
  for (const char* name : {"127.0.0.1", "localhost"}) {
    client_->server.hostName = QLatin1String(name);
    client_->connectToServer();
    type(QStringLiteral("look"));
    QTRY_VERIFY(server_->hasPendingConnections());
    QTcpSocket* const peer = server_->nextPendingConnection();
    QTRY_COMPARE(peer->bytesAvailable(), qint64{6});
    QCOMPARE(peer->readAll(), QByteArray("look\r\n"));
    client_->link.disconnectFromServer();
    QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  }
}

void TestGameLinkConnecting::linesTypedDuringAFailingAttemptAreLost_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<QString>("line");
  const auto refused = QStringLiteral("<i>Error: Connection refused by the peer</i>");
  QTest::newRow("a refused address") << "127.0.0.1" << refused;
  QTest::newRow("a refused name") << "localhost" << refused;
  QTest::newRow("an unknown name")
      << "no-such-host.invalid" << QStringLiteral("<i>Error: Host not found</i>");
}

void TestGameLinkConnecting::linesTypedDuringAFailingAttemptAreLost() {
  QFETCH(QString, name);
  QFETCH(QString, line);
  client_->server.hostName = name;
  const RefusedPort refused;
  client_->server.port = refused.number();
  client_->connectToServer();
  type(QStringLiteral("lost"));
  QTRY_COMPARE_WITH_TIMEOUT(client_->host.enabledActions(), QStringLiteral("C-P"), 30000);
  QTest::qWait(50);
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), line}));  // one error, not two
  type(QStringLiteral("lost as well"));
  expectNothingKept();
}

void TestGameLinkConnecting::linesTypedDuringAnAbortedAttemptAreLost() {
  const FullBacklog backlog;
  client_->server.port = backlog.port();
  client_->connectToServer();
  type(QStringLiteral("lost"));
  client_->link.disconnectFromServer();
  type(QStringLiteral("lost as well"));
  expectNothingKept();
}

void TestGameLinkConnecting::theAttemptLine_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<int>("port");
  QTest::addColumn<QString>("shownName");
  constexpr int low = std::numeric_limits<int>::min();
  QTest::newRow("an ordinary host") << "mud.invalid" << 5000 << "mud.invalid";
  QTest::newRow("an empty host") << "" << 5000 << "";
  QTest::newRow("a port beyond 16 bits is shown whole") << "a.invalid" << 70000 << "a.invalid";
  QTest::newRow("a negative port is shown whole") << "a.invalid" << low << "a.invalid";
  QTest::newRow("Latin-1 stays") << QStringLiteral("\u00e9.invalid") << 1
                                 << QStringLiteral("\u00e9.invalid");
  QTest::newRow("what is beyond Latin-1 is a question mark")
      << QStringLiteral("\u20ac\u6f22.invalid") << 1 << "??.invalid";
  QTest::newRow("a placeholder is only text") << "%1%2.invalid" << 1 << "%1%2.invalid";
  QTest::newRow("a zero ends the name") << QStringLiteral("a") + QChar(0) + u'b' << 1 << "a";
  // 995 characters, without the tags and the words around the name.
  QTest::newRow("the longest host that fits") << QString(947, u'h') << 5000 << QString(947, u'h');
  QTest::newRow("one longer is cut") << QString(948, u'h') << 5000 << QString(947, u'h');
  QTest::newRow("a longer port leaves less") << QString(5000, u'h') << low << QString(940, u'h');
  QTest::newRow("a million characters are cut")
      << QString(1000000, u'h') << 5000 << QString(947, u'h');
}

void TestGameLinkConnecting::theAttemptLine() {
  QFETCH(QString, name);
  QFETCH(int, port);
  QFETCH(QString, shownName);
  client_->server.hostName = name;
  client_->server.port = port;
  client_->connectToServer();
  client_->socket.abort();
  const QString line = client_->host.lines.first();
  QCOMPARE(line, QStringLiteral("<i>Attempting to connect to %1 on port %2...</i>")
                     .arg(shownName, QString::number(port)));
  QVERIFY(line.size() <= client_->host.room);
}

void TestGameLinkConnecting::theAttemptLineFitsTheRoomThatThereIs_data() {
  QTest::addColumn<int>("room");
  QTest::addColumn<int>("shownLetters");
  QTest::newRow("much room") << 2000 << 200;
  QTest::newRow("room for all") << 248 << 200;
  QTest::newRow("room for all but one") << 247 << 199;
  QTest::newRow("room for one") << 49 << 1;
  QTest::newRow("room for the words alone") << 48 << 0;
  QTest::newRow("less room than the words need") << 47 << 0;
  QTest::newRow("no room") << 0 << 0;
}

void TestGameLinkConnecting::theAttemptLineFitsTheRoomThatThereIs() {
  QFETCH(int, room);
  QFETCH(int, shownLetters);
  client_->server = {.hostName = QString(200, u'h'), .port = 5000};
  client_->host.room = room;
  client_->connectToServer();
  client_->socket.abort();
  QCOMPARE(client_->host.lines.first(),
           QStringLiteral("<i>Attempting to connect to %1 on port 5000...</i>")
               .arg(QString(shownLetters, u'h')));
}

void TestGameLinkConnecting::thePortIsCutToSixteenBits_data() {
  QTest::addColumn<int>("offset");
  QTest::newRow("as it is") << 0;
  QTest::newRow("above") << 65536;
  QTest::newRow("below") << -65536;
  QTest::newRow("at the end of int") << std::numeric_limits<int>::min();
}

void TestGameLinkConnecting::thePortIsCutToSixteenBits() {
  QFETCH(int, offset);
  client_->server.port += offset;
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), connectedText()}));
}

KELMORA_TEST_MAIN(TestGameLinkConnecting)
#include "tst_gamelink_connecting.moc"

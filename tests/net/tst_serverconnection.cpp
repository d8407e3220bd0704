#include <QTcpServer>
#include <QTest>
#include <QTextStream>
#include <limits>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "Client.h"
#include "net/SendLine.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::net;

namespace {

/// Takes connections into a queue that is full, so that a further attempt
/// stays an attempt.
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

  /// Makes room, so that an attempt still alive would succeed.
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

class TestServerConnection : public QObject {
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

  void linesTypedDuringAnAttemptGoOutOnceItSucceeds();
  void linesTypedDuringAFailingAttemptAreLost_data();
  void linesTypedDuringAFailingAttemptAreLost();
  void linesTypedDuringAnAbortedAttemptAreLost();

  void theAttemptLine_data();
  void theAttemptLine();
  void thePortIsCutToSixteenBits_data();
  void thePortIsCutToSixteenBits();

 private:
  [[nodiscard]] bool connectClient();
  void type(const QString& line);
  void expectNothingKept();

  std::unique_ptr<QTcpServer> server_;
  std::unique_ptr<Client> client_;
};

void TestServerConnection::init() {
  // No operation may end in a complaint of the toolkit.
  QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
  server_ = std::make_unique<QTcpServer>();
  QVERIFY(server_->listen(QHostAddress::LocalHost));
  client_ = std::make_unique<Client>();
  client_->settings.port = server_->serverPort();
}

void TestServerConnection::cleanup() {
  client_.reset();
  server_.reset();
}

bool TestServerConnection::connectClient() {
  client_->connection.connectToServer();
  return QTest::qWaitFor([this] {
    return client_->host.enabledActions() == QStringLiteral("-D-") &&
           server_->hasPendingConnections();
  });
}

void TestServerConnection::type(const QString& line) {
  QTextStream stream(&client_->socket);
  net::sendLine(stream, line);
}

void TestServerConnection::expectNothingKept() {
  client_->settings.hostName = QStringLiteral("127.0.0.1");
  client_->settings.port = server_->serverPort();
  QVERIFY(connectClient());
  type(QStringLiteral("kept"));
  QTcpSocket* const peer = server_->nextPendingConnection();
  QTRY_VERIFY(peer->bytesAvailable() >= 6);
  QCOMPARE(peer->readAll(), QByteArray("kept\r\n"));
}

void TestServerConnection::connectingTellsAndDisablesConnect() {
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  client_->connection.connectToServer();
  QCOMPARE(client_->host.lines, QStringList{client_->attempt()});
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("--P"));
  QCOMPARE(client_->host.focusings, 1);
}

void TestServerConnection::aConnectionTellsAndSwitchesTheActions() {
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), connectedLine()}));
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("-D-"));
  QCOMPARE(client_->host.focusings, 1);
}

void TestServerConnection::theServersEndIsOneLine() {
  QVERIFY(connectClient());
  client_->host.lines.clear();
  server_->nextPendingConnection()->close();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedLine()});
}

void TestServerConnection::theEndAloneSwitchesAllActions() {
  client_->host.actions = {{ConnectionAction::Connect, false},
                           {ConnectionAction::Disconnect, true},
                           {ConnectionAction::ProxySettings, false}};
  client_->connection.clientDisconnected();
  QCOMPARE(client_->host.enabledActions(), QString("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedLine()});
}

void TestServerConnection::anErrorThatEndsNothingKeepsTheConnection() {
  client_->connection.connectToServer();
  QTRY_COMPARE(client_->socket.state(), QAbstractSocket::ConnectedState);
  client_->connection.displaySocketError(QAbstractSocket::SocketTimeoutError);
  QCOMPARE(client_->socket.state(), QAbstractSocket::ConnectedState);
  QCOMPARE(client_->host.lines.last(), QString("<i>Error: Socket error 5</i>"));
}

void TestServerConnection::afterAFailedAttemptTheSocketIsClosed() {
  const RefusedPort port;
  client_->settings.port = port.number();
  client_->connection.connectToServer();
  QTRY_VERIFY(client_->host.lines.last().contains("refused"));
  // A stream on it would keep what is written, for a later connection.
  QVERIFY(!client_->socket.isOpen());
}

void TestServerConnection::theUsersDisconnectIsOneLine() {
  QVERIFY(connectClient());
  client_->host.lines.clear();
  client_->host.focusings = 0;
  QTcpSocket* const peer = server_->nextPendingConnection();
  client_->connection.disconnectFromServer();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedLine()});
  QCOMPARE(client_->host.focusings, 1);
  QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
}

void TestServerConnection::whatWasWrittenBeforeADisconnectStillArrives() {
  QVERIFY(connectClient());
  const QByteArray sent(3000000, 'x');
  client_->socket.write(sent);
  client_->connection.disconnectFromServer();
  // The socket still empties itself: no word of an end before there is one.
  QCOMPARE(client_->socket.state(), QAbstractSocket::ClosingState);
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C--"));
  QCOMPARE(client_->host.lines.last(), connectedLine());
  QTcpSocket* const peer = server_->nextPendingConnection();
  QByteArray received;
  connect(peer, &QTcpSocket::readyRead, this, [&] { received += peer->readAll(); });
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QTRY_COMPARE(received.size(), sent.size());
  QCOMPARE(client_->host.lines.last(), disconnectedLine());
  peer->disconnect(this);
}

void TestServerConnection::theSameSocketConnectsAgain() {
  for (int i = 0; i < 3; ++i) {
    client_->host.lines.clear();
    QVERIFY(connectClient());
    QTcpSocket* const peer = server_->nextPendingConnection();
    if (i == 1)
      peer->close();
    else
      client_->connection.disconnectFromServer();
    QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
    QCOMPARE(client_->host.lines,
             (QStringList{client_->attempt(), connectedLine(), disconnectedLine()}));
  }
}

void TestServerConnection::disconnectingWithoutAConnectionOnlySwitchesTheActions() {
  client_->connection.disconnectFromServer();
  QCOMPARE(client_->host.lines, QStringList());
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.focusings, 1);
}

void TestServerConnection::aRefusedPortIsNamed() {
  const RefusedPort refused;
  client_->settings.port = refused.number();
  client_->connection.connectToServer();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines,
           (QStringList{client_->attempt(),
                        QStringLiteral("<i>Error: Connection refused by the peer</i>")}));

  client_->settings.port = server_->serverPort();
  client_->host.lines.clear();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), connectedLine()}));
}

void TestServerConnection::anUnknownHostIsNamed_data() {
  QTest::addColumn<QString>("name");
  QTest::newRow("a name that is nowhere") << "no-such-host.invalid";
  QTest::newRow("an empty name") << "";
  QTest::newRow("a blank") << " ";
  QTest::newRow("dots") << "...";
  QTest::newRow("a line end inside") << "a\nb";
  QTest::newRow("a hundred thousand letters") << QString(100000, u'a');
}

void TestServerConnection::anUnknownHostIsNamed() {
  QFETCH(QString, name);
  client_->settings.hostName = name;
  client_->connection.connectToServer();
  QTRY_COMPARE_WITH_TIMEOUT(client_->host.lines.size(), 2, 30000);
  QCOMPARE(client_->host.lines.last(), QStringLiteral("<i>Error: Host not found</i>"));
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
}

void TestServerConnection::everyErrorHasItsLine_data() {
  QTest::addColumn<int>("error");
  QTest::addColumn<QString>("line");
  QTest::newRow("a refusal is named")
      << 0 << QStringLiteral("<i>Error: Connection refused by the peer</i>");
  QTest::newRow("the server's end has no line") << 1 << QString();
  QTest::newRow("an unknown host is named") << 2 << QStringLiteral("<i>Error: Host not found</i>");
  const auto line = QStringLiteral("<i>Error: Socket error %1</i>");
  QTest::newRow("no number is below this one") << -1 << line.arg(-1);
  for (int code = 3; code <= 23; ++code)
    QTest::addRow("number %d is shown", code) << code << line.arg(code);
}

void TestServerConnection::everyErrorHasItsLine() {
  QFETCH(int, error);
  QFETCH(QString, line);
  for (const bool enabled : {false, true}) {
    client_->host.lines.clear();
    client_->host.cursorMoves = 0;
    for (auto& action : client_->host.actions)
      action.second = enabled;
    client_->connection.displaySocketError(static_cast<QAbstractSocket::SocketError>(error));
    QCOMPARE(client_->host.lines, line.isNull() ? QStringList() : QStringList{line});
    QCOMPARE(client_->host.cursorMoves, 1);
    QCOMPARE(client_->host.enabledActions(),
             enabled ? QStringLiteral("CDP") : QStringLiteral("C--"));
  }
  QCOMPARE(client_->host.focusings, 0);
}

void TestServerConnection::aResetConnectionEndsLikeAClosedOne() {
  QVERIFY(connectClient());
  client_->host.lines.clear();
  QTcpSocket* const peer = server_->nextPendingConnection();
  const linger hard{1, 0};
  QCOMPARE(::setsockopt(static_cast<int>(peer->socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard,
                        sizeof hard),
           0);
  peer->abort();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedLine()});
}

void TestServerConnection::disconnectAbortsAnAttempt() {
  FullBacklog backlog;
  client_->settings.port = backlog.port();
  client_->connection.connectToServer();
  QTest::qWait(50);
  QCOMPARE(client_->socket.state(), QAbstractSocket::ConnectingState);
  client_->connection.disconnectFromServer();
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->socket.state(), QAbstractSocket::UnconnectedState);
  backlog.drain();
  QTest::qWait(1500);  // an attempt still alive would try again within a second
  QCOMPARE(client_->host.lines, QStringList{client_->attempt()});

  client_->host.lines.clear();
  client_->settings.port = server_->serverPort();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), connectedLine()}));
}

void TestServerConnection::disconnectAbortsAHostLookup() {
  client_->settings.hostName = QStringLiteral("localhost");
  client_->connection.connectToServer();
  QCOMPARE(client_->socket.state(), QAbstractSocket::HostLookupState);
  client_->connection.disconnectFromServer();
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->socket.state(), QAbstractSocket::UnconnectedState);
  QTest::qWait(300);
  QCOMPARE(client_->host.lines, QStringList{client_->attempt()});
  QVERIFY(!server_->hasPendingConnections());
}

void TestServerConnection::connectAgainstAnAttemptStartsAfresh() {
  const FullBacklog backlog;
  client_->settings.port = backlog.port();
  client_->connection.connectToServer();
  const QString first = client_->attempt();
  client_->settings.port = server_->serverPort();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{first, client_->attempt(), connectedLine()}));
}

void TestServerConnection::connectAgainstAClosingConnectionStartsAfresh() {
  QVERIFY(connectClient());
  // The peer reads nothing, so the socket cannot empty itself and keeps closing.
  QTcpSocket* const peer = server_->nextPendingConnection();
  peer->setReadBufferSize(1);
  client_->socket.write(QByteArray(20000000, 'x'));
  client_->connection.disconnectFromServer();
  QTest::qWait(50);
  QCOMPARE(client_->socket.state(), QAbstractSocket::ClosingState);
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C--"));
  client_->host.lines.clear();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines,
           (QStringList{disconnectedLine(), client_->attempt(), connectedLine()}));
  QTcpSocket* const next = server_->nextPendingConnection();
  client_->socket.write("hello\r\n");
  QTRY_COMPARE(next->bytesAvailable(), qint64{7});
  QCOMPARE(next->readAll(), QByteArray("hello\r\n"));
}

void TestServerConnection::connectAgainstAConnectionStartsAfresh() {
  QVERIFY(connectClient());
  QTcpSocket* const peer = server_->nextPendingConnection();
  client_->host.lines.clear();
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines,
           (QStringList{disconnectedLine(), client_->attempt(), connectedLine()}));
  QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
}

void TestServerConnection::linesTypedDuringAnAttemptGoOutOnceItSucceeds() {
  for (const char* name : {"127.0.0.1", "localhost"}) {
    client_->settings.hostName = QLatin1String(name);
    client_->connection.connectToServer();
    type(QStringLiteral("look"));
    QTRY_VERIFY(server_->hasPendingConnections());
    QTcpSocket* const peer = server_->nextPendingConnection();
    QTRY_COMPARE(peer->bytesAvailable(), qint64{6});
    QCOMPARE(peer->readAll(), QByteArray("look\r\n"));
    client_->connection.disconnectFromServer();
    QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  }
}

void TestServerConnection::linesTypedDuringAFailingAttemptAreLost_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<QString>("line");
  const auto refused = QStringLiteral("<i>Error: Connection refused by the peer</i>");
  QTest::newRow("a refused address") << "127.0.0.1" << refused;
  QTest::newRow("a refused name") << "localhost" << refused;
  QTest::newRow("an unknown name")
      << "no-such-host.invalid" << QStringLiteral("<i>Error: Host not found</i>");
}

void TestServerConnection::linesTypedDuringAFailingAttemptAreLost() {
  QFETCH(QString, name);
  QFETCH(QString, line);
  client_->settings.hostName = name;
  const RefusedPort refused;
  client_->settings.port = refused.number();
  client_->connection.connectToServer();
  type(QStringLiteral("lost"));
  QTRY_COMPARE_WITH_TIMEOUT(client_->host.enabledActions(), QStringLiteral("C-P"), 30000);
  QTest::qWait(50);
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), line}));  // one error, not two
  type(QStringLiteral("lost as well"));
  expectNothingKept();
}

void TestServerConnection::linesTypedDuringAnAbortedAttemptAreLost() {
  const FullBacklog backlog;
  client_->settings.port = backlog.port();
  client_->connection.connectToServer();
  type(QStringLiteral("lost"));
  client_->connection.disconnectFromServer();
  type(QStringLiteral("lost as well"));
  expectNothingKept();
}

void TestServerConnection::theAttemptLine_data() {
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
  // 1023, without the span of 28 that goes before, the tags and the words.
  QTest::newRow("the longest host that fits") << QString(947, u'h') << 5000 << QString(947, u'h');
  QTest::newRow("one longer is cut") << QString(948, u'h') << 5000 << QString(947, u'h');
  QTest::newRow("a longer port leaves less") << QString(5000, u'h') << low << QString(940, u'h');
  QTest::newRow("a million characters are cut")
      << QString(1000000, u'h') << 5000 << QString(947, u'h');
}

void TestServerConnection::theAttemptLine() {
  QFETCH(QString, name);
  QFETCH(int, port);
  QFETCH(QString, shownName);
  client_->settings.hostName = name;
  client_->settings.port = port;
  client_->connection.connectToServer();
  client_->socket.abort();
  const QString line = client_->host.lines.first();
  QCOMPARE(line, QStringLiteral("<i>Attempting to connect to %1 on port %2...</i>")
                     .arg(shownName, QString::number(port)));
  QVERIFY(line.size() + QLatin1String("<span style=\"color:#BDBDBD\">").size() <= 1023);
}

void TestServerConnection::thePortIsCutToSixteenBits_data() {
  QTest::addColumn<int>("offset");
  QTest::newRow("as it is") << 0;
  QTest::newRow("above") << 65536;
  QTest::newRow("below") << -65536;
  QTest::newRow("at the end of int") << std::numeric_limits<int>::min();
}

void TestServerConnection::thePortIsCutToSixteenBits() {
  QFETCH(int, offset);
  client_->settings.port += offset;
  QVERIFY(connectClient());
  QCOMPARE(client_->host.lines, (QStringList{client_->attempt(), connectedLine()}));
}

KELMORA_TEST_MAIN(TestServerConnection)
#include "tst_serverconnection.moc"

#include <QNetworkProxy>
#include <QTcpServer>
#include <QTest>
#include <limits>

#include "Client.h"
#include "net/Proxy.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::net;

namespace {

// For the usual names and addresses of this computer the toolkit asks no proxy.
const QString target = QStringLiteral("0.0.0.0");

/// A proxy on this computer.
void installLocalProxy(int type, quint16 port) {
  net::installProxy({.type = type,
                     .hostName = QStringLiteral("127.0.0.1"),
                     .port = QString::number(port),
                     .userName = {},
                     .password = {}});
}

}  // namespace

class TestProxy : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void theProxyIsInstalled_data();
  void theProxyIsInstalled();
  void typeZeroIsThePlatformsChoice();
  void thePortTextBecomesAPort_data();
  void thePortTextBecomesAPort();
  void noProxyReplacesAnInstalledOne();
  void aProxyThatIsNotThereIsAnErrorNumber();
  void aProxyThatCannotTunnelFailsAndConnectStaysEnabled_data();
  void aProxyThatCannotTunnelFailsAndConnectStaysEnabled();
  void disconnectAbortsAnAttemptThroughASilentProxy();
  void aProxyThatHangsUpLeavesConnectEnabled_data();
  void aProxyThatHangsUpLeavesConnectEnabled();
};

void TestProxy::init() {
  QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
}

void TestProxy::cleanup() {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

void TestProxy::theProxyIsInstalled_data() {
  QTest::addColumn<int>("stored");
  QTest::addColumn<int>("type");
  QTest::newRow("SOCKS 5") << 1 << int(QNetworkProxy::Socks5Proxy);
  QTest::newRow("none") << 2 << int(QNetworkProxy::NoProxy);
  QTest::newRow("HTTP") << 3 << int(QNetworkProxy::HttpProxy);
  QTest::newRow("HTTP caching") << 4 << int(QNetworkProxy::HttpCachingProxy);
  QTest::newRow("FTP caching") << 5 << int(QNetworkProxy::FtpCachingProxy);
  QTest::newRow("a type above is SOCKS 5") << 6 << int(QNetworkProxy::Socks5Proxy);
  QTest::newRow("a type below is SOCKS 5") << -1 << int(QNetworkProxy::Socks5Proxy);
  QTest::newRow("the largest is SOCKS 5")
      << std::numeric_limits<int>::max() << int(QNetworkProxy::Socks5Proxy);
}

void TestProxy::theProxyIsInstalled() {
  QFETCH(int, stored);
  QFETCH(int, type);
  const Proxy wanted{.type = stored,
                     .hostName = QStringLiteral("proxy.invalid"),
                     .port = QStringLiteral("1080"),
                     .userName = QStringLiteral("u\u20ac"),
                     .password = QStringLiteral(" p ")};
  net::installProxy(wanted);
  const QNetworkProxy proxy = QNetworkProxy::applicationProxy();
  QCOMPARE(int(proxy.type()), type);
  QCOMPARE(proxy.hostName(), wanted.hostName);
  QCOMPARE(proxy.port(), quint16{1080});
  QCOMPARE(proxy.user(), wanted.userName);
  QCOMPARE(proxy.password(), wanted.password);
}

void TestProxy::typeZeroIsThePlatformsChoice() {
  QTcpServer server;
  QVERIFY(server.listen(QHostAddress::LocalHost));
  Client client;
  client.server.hostName = target;
  client.server.port = server.serverPort();
  installLocalProxy(QNetworkProxy::DefaultProxy, 1);
  client.connectToServer();  // no proxy in this environment
  QTRY_COMPARE(client.host.lines, (QStringList{client.attempt(), connectedText()}));
}

void TestProxy::thePortTextBecomesAPort_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<quint16>("port");
  QTest::newRow("a number") << "8080" << quint16{8080};
  QTest::newRow("nothing is 0") << "" << quint16{0};
  QTest::newRow("a word is 0") << "abc" << quint16{0};
  QTest::newRow("a number and a word is 0") << "80abc" << quint16{0};
  QTest::newRow("hexadecimal is 0") << "0x50" << quint16{0};
  QTest::newRow("the highest") << "65535" << quint16{65535};
  QTest::newRow("one above is cut to 0") << "65536" << quint16{0};
  QTest::newRow("one below is cut to the highest") << "-1" << quint16{65535};
  QTest::newRow("far above is cut") << "1000000" << static_cast<quint16>(1000000 % 65536);
  QTest::newRow("beyond int is no integer") << "4294967376" << quint16{0};
}

void TestProxy::thePortTextBecomesAPort() {
  QFETCH(QString, text);
  QFETCH(quint16, port);
  Proxy proxy;
  proxy.port = text;
  net::installProxy(proxy);
  QCOMPARE(QNetworkProxy::applicationProxy().port(), port);
}

void TestProxy::noProxyReplacesAnInstalledOne() {
  QTcpServer server;
  QVERIFY(server.listen(QHostAddress::LocalHost));
  Client client;
  client.server.hostName = target;
  client.server.port = server.serverPort();
  net::installProxy({.type = QNetworkProxy::Socks5Proxy,
                     .hostName = QStringLiteral("127.0.0.1"),
                     .port = QStringLiteral("1"),
                     .userName = QStringLiteral("user"),
                     .password = {}});
  net::installNoProxy();
  const QNetworkProxy proxy = QNetworkProxy::applicationProxy();
  QCOMPARE(proxy.type(), QNetworkProxy::NoProxy);
  QCOMPARE(proxy.hostName(), QString());
  QCOMPARE(proxy.port(), quint16{0});
  QCOMPARE(proxy.user(), QString());
  QCOMPARE(proxy.password(), QString());
  client.connectToServer();
  QTRY_COMPARE(client.host.lines, (QStringList{client.attempt(), connectedText()}));
}

void TestProxy::aProxyThatIsNotThereIsAnErrorNumber() {
  const RefusedPort closed;
  Client client;
  client.server.hostName = target;
  installLocalProxy(QNetworkProxy::Socks5Proxy, closed.number());
  client.connectToServer();
  QTRY_COMPARE(client.host.lines,
               (QStringList{client.attempt(), QStringLiteral("<i>Error: Socket error 14</i>")}));
  QCOMPARE(client.host.enabledActions(), QStringLiteral("C-P"));
}

void TestProxy::aProxyThatCannotTunnelFailsAndConnectStaysEnabled_data() {
  QTest::addColumn<int>("type");
  QTest::newRow("HTTP caching") << 4;
  QTest::newRow("FTP caching") << 5;
}

void TestProxy::aProxyThatCannotTunnelFailsAndConnectStaysEnabled() {
  QFETCH(int, type);
  Client client;
  client.server.hostName = target;
  installLocalProxy(type, 1);
  client.connectToServer();
  QTRY_COMPARE(client.host.lines,
               (QStringList{client.attempt(), QStringLiteral("<i>Error: Socket error 10</i>")}));
  QCOMPARE(client.host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client.host.focusings, 1);
}

void TestProxy::disconnectAbortsAnAttemptThroughASilentProxy() {
  QTcpServer silent;
  QVERIFY(silent.listen(QHostAddress::LocalHost));
  Client client;
  client.server.hostName = target;
  installLocalProxy(QNetworkProxy::Socks5Proxy, silent.serverPort());
  client.connectToServer();
  QTRY_VERIFY(silent.hasPendingConnections());
  QTcpSocket* const peer = silent.nextPendingConnection();
  QTRY_VERIFY(peer->bytesAvailable() > 0);
  QCOMPARE(client.host.enabledActions(), QStringLiteral("--P"));
  client.link.disconnectFromServer();
  QCOMPARE(client.host.enabledActions(), QStringLiteral("C-P"));
  QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
  QTest::qWait(100);
  QCOMPARE(client.host.lines, QStringList{client.attempt()});
}

void TestProxy::aProxyThatHangsUpLeavesConnectEnabled_data() {
  QTest::addColumn<int>("type");
  QTest::addColumn<QByteArray>("answer");
  QTest::newRow("SOCKS, without a word") << 1 << QByteArray();
  QTest::newRow("SOCKS, after rubbish") << 1 << QByteArray("HTTP/1.0 400 Bad\r\n\r\n");
  QTest::newRow("HTTP, without a word") << 3 << QByteArray();
  QTest::newRow("HTTP, after rubbish") << 3 << QByteArray("\x05\xff");
  QTest::newRow("HTTP, after a refusal") << 3 << QByteArray("HTTP/1.0 403 Forbidden\r\n\r\n");
}

void TestProxy::aProxyThatHangsUpLeavesConnectEnabled() {
  QFETCH(int, type);
  QFETCH(QByteArray, answer);
  QTcpServer rude;
  connect(&rude, &QTcpServer::newConnection, &rude, [&] {
    while (QTcpSocket* const peer = rude.nextPendingConnection()) {
      peer->write(answer);
      peer->disconnectFromHost();
    }
  });
  QVERIFY(rude.listen(QHostAddress::LocalHost));
  Client client;
  client.server.hostName = target;
  installLocalProxy(type, rude.serverPort());
  client.connectToServer();
  QTRY_COMPARE(client.host.enabledActions(), QStringLiteral("C-P"));
  QTest::qWait(50);
  QCOMPARE(client.host.enabledActions(), QStringLiteral("C-P"));
  QVERIFY(!client.host.lines.contains(connectedText()));
  QVERIFY2(client.host.lines.value(1).startsWith(QStringLiteral("<i>Error: Socket error ")),
           qPrintable(client.host.lines.join(u'\n')));
}

KELMORA_TEST_MAIN(TestProxy)
#include "tst_proxy.moc"

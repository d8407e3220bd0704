#include <QTcpServer>
#include <QTest>

#include "Client.h"
#include "net/Proxy.h"
#include "support/GameServer.h"
#include "support/LogLines.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::net;

namespace {

const char* const category = "kelmora.connection";
const QString ownAddress = QStringLiteral("127.0.0.1");

}  // namespace

/// What somebody who looks into a player's trouble can have the link write down.
class TestConnectionLog : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup();
  void nothingIsLoggedUnlessItIsSwitchedOn();
  void aConnectionIsLogged();
  void aFailedAttemptIsLoggedWithWhatItCosts();
  void anAbortedAttemptIsLoggedWithWhatItCosts();
  void aLineWithoutAConnectionIsLogged();
  void everyLineThatAFullBacklogCostsIsLogged();
  void theProxyIsLogged_data();
  void theProxyIsLogged();
  void neitherPasswordsNorLinesAreLogged();

 private:
  static void playThroughEverything();
};

void TestConnectionLog::cleanup() {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

void TestConnectionLog::playThroughEverything() {
  net::installProxy({.type = 99,
                     .hostName = ownAddress,
                     .port = QStringLiteral("none"),
                     .userName = QStringLiteral("someone"),
                     .password = QStringLiteral("password")});
  net::installNoProxy();
  Client client;
  (void)client.link.sendLine(QStringLiteral("typed"));
  const RefusedPort refused;
  client.server.port = refused.number();
  client.connectToServer();
  (void)client.link.sendLine(QStringLiteral("typed"));
  QTRY_COMPARE(client.host.enabledActions(), QStringLiteral("C-P"));
  GameServer server;
  client.server.port = server.port();
  client.connectToServer();
  QTRY_VERIFY(server.peer() && client.host.enabledActions() == QStringLiteral("-D-"));
  for (int i = 0; i < 70; ++i)
    (void)client.link.sendLine(QStringLiteral("typed").repeated(200'000));
  server.send("shown");
  client.link.disconnectFromServer();
  client.connectToServer();
  client.link.disconnectFromServer();
}

void TestConnectionLog::nothingIsLoggedUnlessItIsSwitchedOn() {
  const LogLines log(category, LogLines::Category::AsItIs);
  playThroughEverything();
  QCOMPARE(log.text(), QString());
}

void TestConnectionLog::neitherPasswordsNorLinesAreLogged() {
  const LogLines log(category);
  playThroughEverything();
  QVERIFY(!log.text().isEmpty());
  for (const char* secret : {"someone", "password", "typed", "shown"})
    QVERIFY2(!log.text().contains(QLatin1String(secret)), qPrintable(log.text()));
}

void TestConnectionLog::aConnectionIsLogged() {
  const LogLines log(category);
  GameServer server;
  Client client;
  client.server.port = server.port();
  client.connectToServer();
  const QString port = QString::number(server.port());
  QVERIFY(log.text().contains(QStringLiteral("connecting to \"127.0.0.1\" port ") + port));
  QTRY_VERIFY(server.peer() && client.host.enabledActions() == QStringLiteral("-D-"));
  QVERIFY(
      log.text().contains(QStringLiteral("connected to QHostAddress(\"127.0.0.1\") port ") + port));
  QVERIFY(!log.text().contains(QStringLiteral("disconnect")));
  client.link.disconnectFromServer();
  QVERIFY(log.text().contains(QStringLiteral("disconnecting in QAbstractSocket::ConnectedState")));
  QTRY_VERIFY(log.text().endsWith(QStringLiteral("disconnected")));
  QVERIFY(!log.text().contains(QStringLiteral("lost")));
}

void TestConnectionLog::aFailedAttemptIsLoggedWithWhatItCosts() {
  const LogLines log(category);
  const RefusedPort refused;
  Client client;
  client.server.port = refused.number();
  client.connectToServer();
  QCOMPARE(client.link.sendLine(QStringLiteral("look")), SendResult::Sent);
  QTRY_COMPARE(client.host.enabledActions(), QStringLiteral("C-P"));
  QVERIFY(log.text().contains(QStringLiteral("QAbstractSocket::ConnectionRefusedError")));
  QVERIFY(log.text().contains(QStringLiteral("6 bytes of waiting lines are lost")));
}

void TestConnectionLog::anAbortedAttemptIsLoggedWithWhatItCosts() {
  QTcpServer silentProxy;
  QVERIFY(silentProxy.listen(QHostAddress::LocalHost));
  net::installProxy({.type = QNetworkProxy::Socks5Proxy,
                     .hostName = ownAddress,
                     .port = QString::number(silentProxy.serverPort()),
                     .userName = {},
                     .password = {}});
  const LogLines log(category);
  Client client;
  client.server.hostName = QStringLiteral("0.0.0.0");
  client.connectToServer();
  QCOMPARE(client.link.sendLine(QStringLiteral("look")), SendResult::Sent);
  client.link.disconnectFromServer();
  QVERIFY(log.text().contains(QStringLiteral("6 bytes of waiting lines are lost")));
}

void TestConnectionLog::aLineWithoutAConnectionIsLogged() {
  const LogLines log(category);
  Client client;
  for (int i = 1; i <= 2; ++i) {
    QCOMPARE(client.link.sendLine(QStringLiteral("look")), SendResult::NotConnected);
    QCOMPARE(log.text().count(QStringLiteral("a line is lost, as there is no connection")), i);
  }
}

void TestConnectionLog::everyLineThatAFullBacklogCostsIsLogged() {
  GameServer server;
  Client client;
  client.server.port = server.port();
  client.connectToServer();
  QTRY_VERIFY(server.peer() && client.host.enabledActions() == QStringLiteral("-D-"));
  const LogLines log(category);
  const QString line(GameLink::largestBacklog, u'x');
  QCOMPARE(client.link.sendLine(line), SendResult::Sent);
  QCOMPARE(log.text(), QString());
  QCOMPARE(client.link.sendLine(line), SendResult::LossBegins);
  QCOMPARE(client.link.sendLine(line), SendResult::LossGoesOn);
  QCOMPARE(log.text().count(QStringLiteral("a line is lost, as 67108866 bytes wait")), 2);
}

void TestConnectionLog::theProxyIsLogged_data() {
  QTest::addColumn<int>("type");
  QTest::addColumn<QString>("port");
  QTest::addColumn<QStringList>("expected");
  const auto row = [](const char* name, int type, const char* port, const QStringList& expected) {
    QTest::newRow(name) << type << QString(port) << expected;
  };
  row("as it is", 3, "8080", {"proxy \"127.0.0.1\" port 8080 type 3"});
  row("an unknown type", 6, "8080",
      {"proxy \"127.0.0.1\" port 8080 type 1", "unknown proxy type 6 taken for SOCKS 5"});
  row("a port that is no number", 3, "abc",
      {"proxy \"127.0.0.1\" port 0 type 3", "proxy port \"abc\" taken for 0"});
  row("a port above 16 bits", 3, "70000",
      {"proxy \"127.0.0.1\" port 4464 type 3", "proxy port \"70000\" taken for 4464"});
}

void TestConnectionLog::theProxyIsLogged() {
  QFETCH(const int, type);
  QFETCH(const QString, port);
  QFETCH(const QStringList, expected);
  const LogLines log(category);
  net::installProxy(
      {.type = type, .hostName = ownAddress, .port = port, .userName = {}, .password = {}});
  QCOMPARE(log.text(), expected.join(u'\n'));
  net::installNoProxy();
  QVERIFY(log.text().endsWith(QStringLiteral("\nno proxy")));
}

KELMORA_TEST_MAIN(TestConnectionLog)
#include "tst_connectionlog.moc"

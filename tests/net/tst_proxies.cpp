#include <QDir>
#include <QFile>
#include <QHostInfo>
#include <QNetworkProxy>
#include <QTcpServer>
#include <QTest>
#include <QTextStream>
#include <memory>
#include <vector>

#include "Client.h"
#include "ProxyProcess.h"
#include "net/Proxy.h"
#include "net/SendLine.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::net;

// The connection through proxy servers as people run them.

namespace {

const QString user = QStringLiteral("kelmora");
const QString password = QStringLiteral("open");
const QString refusedByPeer = QStringLiteral("<i>Error: Connection refused by the peer</i>");

QString errorNumber(QAbstractSocket::SocketError error) {
  return QStringLiteral("<i>Error: Socket error %1</i>").arg(static_cast<int>(error));
}

/// Writes a file into the scratch folder and returns its full path.
QString write(const QString& name, const QString& content) {
  QFile file(name);
  if (!file.open(QIODevice::WriteOnly) || file.write(content.toUtf8()) < 0)
    qFatal("the scratch folder takes no files");
  return QDir::current().absoluteFilePath(name);
}

QStringList microsocks(const QString& program, quint16 port, bool withPassword) {
  QStringList command{program, QStringLiteral("-i"), QStringLiteral("127.0.0.1"),
                      QStringLiteral("-p"), QString::number(port)};
  if (withPassword)
    command << QStringLiteral("-u") << user << QStringLiteral("-P") << password;
  return command;
}

QStringList danted(const QString& program, quint16 port, bool withPassword) {
  const QString config =
      write(QStringLiteral("danted.conf"),
            QStringLiteral("logoutput: %1\n"
                           "internal: 127.0.0.1 port = %2\n"
                           "external: 127.0.0.1\n"
                           "clientmethod: none\n"
                           "socksmethod: %3\n"
                           "client pass { from: 127.0.0.0/8 to: 0.0.0.0/0 }\n"
                           "socks pass { from: 127.0.0.0/8 to: 0.0.0.0/0 }\n")
                .arg(QDir::current().absoluteFilePath(QStringLiteral("danted.log")))
                .arg(port)
                .arg(withPassword ? QStringLiteral("username") : QStringLiteral("none")));
  const QStringList command{program, QStringLiteral("-f"), config, QStringLiteral("-p"),
                            QDir::current().absoluteFilePath(QStringLiteral("danted.pid"))};
  if (!withPassword)
    return command;
  // It asks the system's own user tables. In a mount namespace of its own these
  // are ours, and nothing outside of it changes.
  const QString users =
      write(QStringLiteral("passwd"), QStringLiteral("root:x:0:0::/:/bin/sh\n"
                                                     "nobody:x:65534:65534::/:/bin/false\n"
                                                     "%1:x:54321:65534::/:/bin/false\n")
                                          .arg(user));
  const QString secrets = write(
      QStringLiteral("shadow"),
      user + QStringLiteral(":$6$kelmora$dqtD9SmZxq.pa0oghFfxzh8dtDNWMbJhEXgErEj/"
                            "r.IYB3wMbhjl0eKvSn5XKehpwExew5vYLCAM.PRvjBvnH/:19000:0:99999:7:::\n"));
  return QStringList{QStringLiteral("unshare"),
                     QStringLiteral("-m"),
                     QStringLiteral("sh"),
                     QStringLiteral("-c"),
                     QStringLiteral("mount --bind \"$1\" /etc/passwd && "
                                    "mount --bind \"$2\" /etc/shadow && shift 2 && exec \"$@\""),
                     QStringLiteral("sh"),
                     users,
                     secrets} +
         command;
}

QStringList tinyproxy(const QString& program, quint16 port, bool withPassword) {
  QString config = QStringLiteral(
                       "Listen 127.0.0.1\nPort %1\nTimeout 60\nMaxClients 20\n"
                       "LogFile \"%2\"\nAllow 127.0.0.1\n")
                       .arg(port)
                       .arg(QDir::current().absoluteFilePath(QStringLiteral("tinyproxy.log")));
  if (withPassword)
    config += QStringLiteral("BasicAuth %1 %2\n").arg(user, password);
  return {program, QStringLiteral("-d"), QStringLiteral("-c"),
          write(QStringLiteral("tinyproxy.conf"), config)};
}

// Qt takes no proxy for the loopback's own names and addresses. This address is
// none of them, and a connection to it ends on this machine;
QString anyAddress() {
  return QStringLiteral("0.0.0.0");
}

// for a proxy that refuses it there is the name of the machine, which a proxy
// looks up by itself.
QString ownName() {
  return QHostInfo::localHostName();
}

struct Kind {
  const char* row;
  const char* program;
  const char* package;
  QNetworkProxy::ProxyType type;
  bool withPassword;
  QString (*target)();  ///< the server's name for this proxy
  QStringList (*command)(const QString& program, quint16 port, bool withPassword);
  QString refusedLine;        ///< when nothing answers on the server's port
  QString wrongPasswordLine;  ///< null where no password is asked for
};

const std::vector<Kind>& kinds() {
  constexpr auto socks = QNetworkProxy::Socks5Proxy;
  constexpr auto http = QNetworkProxy::HttpProxy;
  // tinyproxy says neither "refused" nor "wrong password" in HTTP's own codes.
  const QString protocol = errorNumber(QAbstractSocket::ProxyProtocolError);
  const QString authentication = errorNumber(QAbstractSocket::ProxyAuthenticationRequiredError);
  static const std::vector<Kind> all{
      {"microsocks",
       "microsocks",
       "microsocks",
       socks,
       false,
       anyAddress,
       microsocks,
       refusedByPeer,
       {}},
      {"microsocks with a password", "microsocks", "microsocks", socks, true, anyAddress,
       microsocks, refusedByPeer, authentication},
      {"Dante", "danted", "dante-server", socks, false, ownName, danted, refusedByPeer, {}},
      {"Dante with a password", "danted", "dante-server", socks, true, ownName, danted,
       refusedByPeer, authentication},
      {"tinyproxy", "tinyproxy", "tinyproxy", http, false, anyAddress, tinyproxy, protocol, {}},
      {"tinyproxy with a password", "tinyproxy", "tinyproxy", http, true, anyAddress, tinyproxy,
       protocol, protocol},
  };
  return all;
}

}  // namespace

class TestProxies : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void linesGoBothWaysAndOnlyThroughTheProxy_data() { rows(false); }
  void linesGoBothWaysAndOnlyThroughTheProxy();
  void theServersEndIsOneLine_data() { rows(false); }
  void theServersEndIsOneLine();
  void theUsersDisconnectReachesTheServer_data() { rows(false); }
  void theUsersDisconnectReachesTheServer();
  void aRefusedPortIsTold_data() { rows(false); }
  void aRefusedPortIsTold();
  void aWrongPasswordIsAnErrorNumber_data() { rows(true); }
  void aWrongPasswordIsAnErrorNumber();
  void theEndOfTheProxyIsTheEndOfTheConnection_data() { rows(false); }
  void theEndOfTheProxyIsTheEndOfTheConnection();

 private:
  static void rows(bool onlyWithPassword);
  void startProxy();
  [[nodiscard]] bool connectClient();

  const Kind* kind_ = nullptr;
  std::unique_ptr<QTcpServer> server_;
  std::unique_ptr<Client> client_;
  std::unique_ptr<ProxyProcess> proxy_;
};

void TestProxies::rows(bool onlyWithPassword) {
  QTest::addColumn<int>("kind");
  for (std::size_t i = 0; i < kinds().size(); ++i)
    if (kinds()[i].withPassword || !onlyWithPassword)
      QTest::newRow(kinds()[i].row) << static_cast<int>(i);
}

void TestProxies::init() {
  QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
  QFETCH(int, kind);
  kind_ = &kinds()[static_cast<std::size_t>(kind)];
  server_ = std::make_unique<QTcpServer>();
  const QString target = kind_->target();
  QHostAddress address(QHostAddress::LocalHost);
  if (!QHostAddress().setAddress(target)) {
    address = QHostAddress(QHostInfo::fromName(target).addresses().value(0));
    if (!address.isLoopback() || target == QStringLiteral("localhost"))
      QSKIP("the name of this machine stands for no address of the loopback");
  }
  QVERIFY(server_->listen(address));
  proxy_ = std::make_unique<ProxyProcess>();
  client_ = std::make_unique<Client>();
  client_->settings.hostName = target;
  client_->settings.port = server_->serverPort();
  client_->settings.proxyType = kind_->type;
  client_->settings.proxyHostName = QStringLiteral("127.0.0.1");
  if (kind_->withPassword) {
    client_->settings.proxyUserName = user;
    client_->settings.proxyPassword = password;
  }
  startProxy();
}

void TestProxies::cleanup() {
  client_.reset();
  proxy_.reset();
  server_.reset();
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

void TestProxies::startProxy() {
  const QString program = ProxyProcess::find(QLatin1String(kind_->program));
  if (program.isEmpty())
    QSKIP(qPrintable(
        QStringLiteral("the package %1 is not installed").arg(QLatin1String(kind_->package))));
  const bool started = proxy_->start(
      [&](quint16 port) { return kind_->command(program, port, kind_->withPassword); });
  if (!started && (proxy_->output().contains("unshare:") || proxy_->output().contains("mount:")))
    QSKIP("Dante asks the system's user tables, and these can only be stood in for by root");
  QVERIFY2(started, proxy_->output().constData());
  client_->settings.proxyPortNumber = QString::number(proxy_->port());
  net::installConfiguredProxy(client_->settings);
}

bool TestProxies::connectClient() {
  client_->connection.connectToServer();
  return QTest::qWaitFor([this] { return client_->host.lines.size() > 1; }) &&
         client_->host.lines == QStringList{client_->attempt(), connectedLine()} &&
         client_->host.enabledActions() == QStringLiteral("-D-") &&
         QTest::qWaitFor([this] { return server_->hasPendingConnections(); });
}

void TestProxies::linesGoBothWaysAndOnlyThroughTheProxy() {
  QVERIFY2(connectClient(), qPrintable(client_->host.lines.join(u'\n')));
  QTcpSocket* const peer = server_->nextPendingConnection();
  {
    QTextStream stream(&client_->socket);
    net::sendLine(stream, QStringLiteral("look \u20ac"));
  }
  QTRY_COMPARE(peer->bytesAvailable(), qint64{10});
  QCOMPARE(peer->readAll(), QByteArray("look \xe2\x82\xac\r\n"));
  const QByteArray answer =
      QByteArray("You see \x1b[1mnothing\x1b[0m.\r\n\xff\xfb\x01").repeated(9000);
  peer->write(answer);
  QTRY_COMPARE(client_->socket.bytesAvailable(), answer.size());
  QVERIFY(client_->socket.readAll() == answer);

  client_->connection.disconnectFromServer();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  // Without the proxy there is no way to the same server.
  proxy_->stop();
  client_->host.lines.clear();
  client_->connection.connectToServer();
  QTRY_COMPARE(
      client_->host.lines,
      (QStringList{client_->attempt(), errorNumber(QAbstractSocket::ProxyConnectionRefusedError)}));
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QTest::qWait(50);
  QVERIFY(!server_->hasPendingConnections());
}

void TestProxies::theServersEndIsOneLine() {
  QVERIFY2(connectClient(), qPrintable(client_->host.lines.join(u'\n')));
  client_->host.lines.clear();
  QTcpSocket* const peer = server_->nextPendingConnection();
  peer->write("bye\r\n");
  peer->close();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedLine()});
}

void TestProxies::theUsersDisconnectReachesTheServer() {
  for (int i = 0; i < 2; ++i) {
    client_->host.lines.clear();
    QVERIFY2(connectClient(), qPrintable(client_->host.lines.join(u'\n')));
    QTcpSocket* const peer = server_->nextPendingConnection();
    client_->connection.disconnectFromServer();
    QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
    QCOMPARE(client_->host.lines.last(), disconnectedLine());
    QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
  }
}

void TestProxies::aRefusedPortIsTold() {
  const RefusedPort refused;
  client_->settings.port = refused.number();
  client_->connection.connectToServer();
  QTRY_COMPARE(client_->host.lines, (QStringList{client_->attempt(), kind_->refusedLine}));
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
}

void TestProxies::aWrongPasswordIsAnErrorNumber() {
  client_->settings.proxyPassword = QStringLiteral("wrong");
  net::installConfiguredProxy(client_->settings);
  client_->connection.connectToServer();
  QTRY_COMPARE(client_->host.lines, (QStringList{client_->attempt(), kind_->wrongPasswordLine}));
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QTest::qWait(50);
  QVERIFY(!server_->hasPendingConnections());
  QCOMPARE(client_->host.lines.size(), 2);
}

void TestProxies::theEndOfTheProxyIsTheEndOfTheConnection() {
  QVERIFY2(connectClient(), qPrintable(client_->host.lines.join(u'\n')));
  client_->host.lines.clear();
  proxy_->stop();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.lines, QStringList{disconnectedLine()});
}

KELMORA_TEST_MAIN(TestProxies)
#include "tst_proxies.moc"

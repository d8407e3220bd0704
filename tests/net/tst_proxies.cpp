#include <QDir>
#include <QHostInfo>
#include <QNetworkProxy>
#include <QTcpServer>
#include <QTest>
#include <memory>
#include <vector>

#include "Client.h"
#include "ProxyProcess.h"
#include "net/Proxy.h"
#include "support/FileText.h"
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
  writeFile(name, content.toUtf8());
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
  QStringList command{program, QStringLiteral("-f"), config, QStringLiteral("-p"),
                            QDir::current().absoluteFilePath(QStringLiteral("danted.pid"))};
  if (!withPassword)
    return command;
  // Dante looks users up in the system's own tables. It is run in a mount
  // namespace in which our tables stand in their place; outside of it nothing
  // changes.
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

// For the usual names and addresses of this computer the toolkit asks no proxy.
// This address is none of them, and still leads to this computer.
QString anyAddress() {
  return QStringLiteral("0.0.0.0");
}

// A proxy that refuses that address gets the name of this computer, which it
// looks up itself.
QString ownName() {
  return QHostInfo::localHostName();
}

struct Kind {
  const char* row;
  const char* program;
  const char* package;
  QNetworkProxy::ProxyType type;
  bool withPassword;
  QString (*target)();  ///< how the client names the server to this proxy
  QStringList (*command)(const QString& program, quint16 port, bool withPassword);
  QString refusedLine;        ///< when nothing answers on the server's port
  QString wrongPasswordLine;  ///< null where no password is asked for
};

const std::vector<Kind>& kinds() {
  constexpr auto socks = QNetworkProxy::Socks5Proxy;
  constexpr auto http = QNetworkProxy::HttpProxy;
  // The status codes with which tinyproxy answers are not those that the toolkit
  // takes for a refused connection or a wrong password.
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
  void installProxy(const QString& withPassword);
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
  client_->server = {.hostName = target, .port = server_->serverPort()};
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
  installProxy(password);
}

void TestProxies::installProxy(const QString& withPassword) {
  net::installProxy({.type = kind_->type,
                     .hostName = QStringLiteral("127.0.0.1"),
                     .port = QString::number(proxy_->port()),
                     .userName = kind_->withPassword ? user : QString(),
                     .password = kind_->withPassword ? withPassword : QString()});
}

bool TestProxies::connectClient() {
  client_->connectToServer();
  return QTest::qWaitFor([this] { return client_->host.lines.size() > 1; }) &&
         client_->host.lines == QStringList{client_->attempt(), connectedText()} &&
         client_->host.enabledActions() == QStringLiteral("-D-") &&
         QTest::qWaitFor([this] { return server_->hasPendingConnections(); });
}

void TestProxies::linesGoBothWaysAndOnlyThroughTheProxy() {
  QVERIFY2(connectClient(), qPrintable(client_->host.lines.join(u'\n')));
  QTcpSocket* const peer = server_->nextPendingConnection();
  QCOMPARE(client_->link.sendLine(QStringLiteral("look \u20ac")), SendResult::Sent);
  QTRY_COMPARE(peer->bytesAvailable(), qint64{10});
  QCOMPARE(peer->readAll(), QByteArray("look \xe2\x82\xac\r\n"));
  const QByteArray answer =
      QByteArray("You see \x1b[1mnothing\x1b[0m.\r\n\xff\xfb\x01").repeated(9000);
  peer->write(answer);
  QTRY_COMPARE(client_->host.reads.join().size(), answer.size());
  QVERIFY(client_->host.reads.join() == answer);

  client_->link.disconnectFromServer();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  // Without the proxy there is no way to the same server.
  proxy_->stop();
  client_->host.lines.clear();
  client_->connectToServer();
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
  QCOMPARE(client_->host.lines, QStringList{disconnectedText()});
}

void TestProxies::theUsersDisconnectReachesTheServer() {
  for (int i = 0; i < 2; ++i) {
    client_->host.lines.clear();
    QVERIFY2(connectClient(), qPrintable(client_->host.lines.join(u'\n')));
    QTcpSocket* const peer = server_->nextPendingConnection();
    client_->link.disconnectFromServer();
    QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
    QCOMPARE(client_->host.lines.last(), disconnectedText());
    QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
  }
}

void TestProxies::aRefusedPortIsTold() {
  const RefusedPort refused;
  client_->server.port = refused.number();
  client_->connectToServer();
  QTRY_COMPARE(client_->host.lines, (QStringList{client_->attempt(), kind_->refusedLine}));
  QCOMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
}

void TestProxies::aWrongPasswordIsAnErrorNumber() {
  installProxy(QStringLiteral("wrong"));
  client_->connectToServer();
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
  QCOMPARE(client_->host.lines, QStringList{disconnectedText()});
}

KELMORA_TEST_MAIN(TestProxies)
#include "tst_proxies.moc"

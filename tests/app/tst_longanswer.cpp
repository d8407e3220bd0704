#include <QApplication>

#include "PlayWindow.h"
#include "net/ProxyProcess.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

using namespace kelmora;
using namespace kelmora::net;

/// More text than one read takes, straight and through real proxies: all of it
/// arrives, in order, also when the server closes right behind it.
class TestLongAnswer : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy); }
  void arrivesWhole_data();
  void arrivesWhole();
  void arrivesWholeWhereTriggersAnswer_data();
  void arrivesWholeWhereTriggersAnswer();
};

void TestLongAnswer::arrivesWhole_data() {
  QTest::addColumn<QString>("program");
  QTest::addColumn<int>("proxyType");
  QTest::newRow("straight") << QString() << 0;
  QTest::newRow("through a SOCKS 5 proxy") << "microsocks" << int(QNetworkProxy::Socks5Proxy);
  QTest::newRow("through an HTTP proxy") << "tinyproxy" << int(QNetworkProxy::HttpProxy);
}

void TestLongAnswer::arrivesWhole() {
  QFETCH(const QString, program);
  QFETCH(const int, proxyType);
  PlayWindow::Options options;
  ProxyProcess proxy;
  if (!program.isEmpty()) {
    const QString path = ProxyProcess::find(program);
    if (path.isEmpty())
      QSKIP("the proxy is not installed: its package has the name of the row");
    const auto command = [&](quint16 port) -> QStringList {
      if (program == "microsocks")
        return {path, "-i", "127.0.0.1", "-p", QString::number(port)};
      QFile config("tinyproxy.conf");
      if (config.open(QIODevice::WriteOnly))
        config.write("Listen 127.0.0.1\nPort " + QByteArray::number(port) +
                     "\nTimeout 60\nMaxClients 20\nAllow 127.0.0.1\n");
      config.close();
      return {path, "-d", "-c", QDir::current().absoluteFilePath("tinyproxy.conf")};
    };
    QVERIFY2(proxy.start(command), proxy.output().constData());
    // An address that the toolkit does not take for the loopback, which it
    // would never ask a proxy for.
    options = {{"hostName", "0.0.0.0"},
               {"useProxyServer", 1},
               {"proxyType", proxyType},
               {"proxyHostName", "127.0.0.1"},
               {"proxyPortNumber", QString::number(proxy.port())}};
  }

  GameServer server;
  PlayWindow play(server.port(), options);
  QVERIFY(play.connectTo(server));
  settled(*play.pane).clear();
  QByteArray bytes;
  for (int i = 0; i < 2000; ++i)
    bytes += "line " + QByteArray::number(i) + " of the answer\r\n";
  server.send(bytes);
  server.peer()->disconnectFromHost();
  QTRY_COMPARE_WITH_TIMEOUT(play.connectionStates(), QString("+-+"), 60000);
  QCOMPARE(play.lastLine(), QString("Disconnected from host!"));
  // The network cuts where it likes, and a blank that begins a read is the
  // toolkit's to collapse.
  const auto withoutBlanks = [](QString text) { return text.remove(' '); };
  QCOMPARE(withoutBlanks(play.text().section('\n', 0, 1999)) + "\n",
           withoutBlanks(QString::fromLatin1(bytes).remove('\r')));
}

void TestLongAnswer::arrivesWholeWhereTriggersAnswer_data() {
  QTest::addColumn<int>("lines");
  for (const int lines : {400, 700, 4000, 20000})
    QTest::addRow("%d lines", lines) << lines;
}

void TestLongAnswer::arrivesWholeWhereTriggersAnswer() {
  // The server is gone by then: writing an answer to it must not cost the text
  // that it had sent before.
  QFETCH(const int, lines);
  writeFile("triggers.txt", "\ntrigger \"ask\"\nanswer\n/trigger\n");
  GameServer server;
  PlayWindow play(server.port(), {{"displayLocalEcho", 0}});
  QVERIFY(play.connectTo(server));
  QByteArray bytes;
  for (int i = 0; i < lines; ++i)
    bytes += (i % 50 == 0 ? "ask " : "line ") + QByteArray::number(i) + " of the answer\r\n";
  server.send(bytes + "Goodbye\r\n");
  server.peer()->disconnectFromHost();
  QTRY_COMPARE_WITH_TIMEOUT(play.connectionStates(), QString("+-+"), 60000);
  QVERIFY(play.text().contains("Goodbye"));
}

KELMORA_GUI_TEST_MAIN(TestLongAnswer)
#include "tst_longanswer.moc"

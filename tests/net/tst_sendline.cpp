#include <QBuffer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTextStream>

#include "Client.h"
#include "net/SendLine.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::net;

class TestSendLine : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void aLineGoesOutWithItsEnd_data();
  void aLineGoesOutWithItsEnd();
  void everyLineIsFlushedAtOnce();
  void withoutAnOpenDeviceNothingHappens();
  void onADeviceForReadingNothingHappens();
  void onAStreamWithoutADeviceNothingHappens();
  void afterAFailedAttemptNothingHappens();
  void linesReachTheServer();
  void tellsWhatBecameOfALine();
  void linesThatBeginToBeLostAreNews();
  void aServerThatTakesNothingIsHeldABoundedBacklog();
};

void TestSendLine::init() {
  QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
}

void TestSendLine::aLineGoesOutWithItsEnd_data() {
  QTest::addColumn<QString>("line");
  QTest::addColumn<QByteArray>("bytes");
  QTest::newRow("a command") << "kill orc" << QByteArray("kill orc\r\n");
  QTest::newRow("nothing") << "" << QByteArray("\r\n");
  QTest::newRow("blanks at both ends") << "  a  " << QByteArray("  a  \r\n");
  QTest::newRow("UTF-8") << QStringLiteral("\u00e9\u20ac\U0001F600")
                         << QByteArray("\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\r\n");
  QTest::newRow("half a pair inside") << QString(QStringLiteral("a") + QChar(0xd83d) + u'b')
                                      << QByteArray(
                                             "a\xef\xbf\xbd"
                                             "b\r\n");
  QTest::newRow("the first half at the end")
      << QString(QStringLiteral("a") + QChar(0xd83d)) << QByteArray("a\xef\xbf\xbd\r\n");
  QTest::newRow("the second half first") << QString(QChar(0xde00) + QStringLiteral("a"))
                                         << QByteArray(
                                                "\xef\xbf\xbd"
                                                "a\r\n");
  QTest::newRow("a zero character")
      << QString(QStringLiteral("a") + QChar(0) + u'b') << QByteArray("a\0b\r\n", 5);
  QTest::newRow("a byte order mark is text")
      << QString(QChar(0xfeff)) << QByteArray("\xef\xbb\xbf\r\n");
  QTest::newRow("a million characters")
      << QString(1000000, u'x') << QByteArray(1000000, 'x') + "\r\n";
  QTest::newRow("pairs across every buffer's edge")
      << u'x' + QStringLiteral("\U0001F600").repeated(50000)
      << 'x' + QByteArray("\xf0\x9f\x98\x80").repeated(50000) + "\r\n";
}

void TestSendLine::aLineGoesOutWithItsEnd() {
  QFETCH(QString, line);
  QFETCH(QByteArray, bytes);
  QBuffer buffer;
  QVERIFY(buffer.open(QIODevice::ReadWrite));
  QTextStream stream(&buffer);
  stream.setAutoDetectUnicode(true);
  net::sendLine(stream, line);
  QCOMPARE(buffer.data().size(), bytes.size());
  QVERIFY(buffer.data() == bytes);
  net::sendLine(stream, QStringLiteral("next"));
  QVERIFY(buffer.data() == bytes + "next\r\n");
}

void TestSendLine::everyLineIsFlushedAtOnce() {
  QBuffer buffer;
  QVERIFY(buffer.open(QIODevice::ReadWrite));
  QTextStream stream(&buffer);
  for (int i = 1; i <= 3; ++i) {
    net::sendLine(stream, QStringLiteral("a"));
    QCOMPARE(buffer.data(), QByteArray("a\r\n").repeated(i));
  }
}

void TestSendLine::withoutAnOpenDeviceNothingHappens() {
  QTcpSocket socket;
  QTextStream stream(&socket);
  net::sendLine(stream, QStringLiteral("lost"));
  QCOMPARE(socket.bytesToWrite(), 0);
  QCOMPARE(stream.status(), QTextStream::Ok);
}

void TestSendLine::onADeviceForReadingNothingHappens() {
  QByteArray content("kept");
  QBuffer buffer(&content);
  QVERIFY(buffer.open(QIODevice::ReadOnly));
  QTextStream stream(&buffer);
  net::sendLine(stream, QStringLiteral("lost"));
  QCOMPARE(content, QByteArray("kept"));
}

void TestSendLine::onAStreamWithoutADeviceNothingHappens() {
  QTextStream stream;
  net::sendLine(stream, QStringLiteral("lost"));
  QCOMPARE(stream.status(), QTextStream::Ok);
}

void TestSendLine::afterAFailedAttemptNothingHappens() {
  const RefusedPort closed;
  QTcpSocket socket;
  socket.connectToHost(QStringLiteral("127.0.0.1"), closed.number());
  QTRY_COMPARE(socket.error(), QAbstractSocket::ConnectionRefusedError);
  int errors = 0;
  connect(&socket, &QTcpSocket::errorOccurred, this, [&errors] { ++errors; });
  QTextStream stream(&socket);
  for (int i = 0; i < 1000; ++i)
    net::sendLine(stream, QStringLiteral("lost"));
  QCOMPARE(stream.status(), QTextStream::Ok);
  QCOMPARE(socket.bytesToWrite(), 0);
  QCOMPARE(errors, 0);
}

void TestSendLine::linesReachTheServer() {
  QTcpServer server;
  QVERIFY(server.listen(QHostAddress::LocalHost));
  QTcpSocket socket;
  socket.connectToHost(QStringLiteral("127.0.0.1"), server.serverPort());
  QTRY_COMPARE(socket.state(), QAbstractSocket::ConnectedState);
  QTRY_VERIFY(server.hasPendingConnections());
  QTcpSocket* const peer = server.nextPendingConnection();
  const QString longLine(2000000, QChar(0x20ac));
  {
    QTextStream stream(&socket);
    net::sendLine(stream, QStringLiteral("look"));
    net::sendLine(stream, longLine);
  }
  const QByteArray expected = "look\r\n" + longLine.toUtf8() + "\r\n";
  QTRY_COMPARE(peer->bytesAvailable(), expected.size());
  QVERIFY(peer->readAll() == expected);

  socket.close();
  QTextStream stream(&socket);
  net::sendLine(stream, QStringLiteral("lost"));
  QTRY_COMPARE(peer->state(), QAbstractSocket::UnconnectedState);
  QCOMPARE(peer->readAll(), QByteArray());
}

void TestSendLine::tellsWhatBecameOfALine() {
  using enum net::SendResult;
  QBuffer buffer;
  QVERIFY(buffer.open(QIODevice::ReadWrite));
  QTextStream toBuffer(&buffer);
  QCOMPARE(net::sendLine(toBuffer, QStringLiteral("look")), Sent);
  QBuffer closed;
  QTextStream toClosed(&closed);
  QCOMPARE(net::sendLine(toClosed, QStringLiteral("look")), NothingTakesIt);
  QTextStream toNothing;
  QCOMPARE(net::sendLine(toNothing, QStringLiteral("look")), NothingTakesIt);
  QTcpSocket socket;
  QTextStream toSocket(&socket);
  QCOMPARE(net::sendLine(toSocket, QStringLiteral("look")), NothingTakesIt);
}

void TestSendLine::linesThatBeginToBeLostAreNews() {
  using enum net::SendResult;
  net::LostLines lost;
  QVERIFY(!lost.areNews(Sent));
  QVERIFY(lost.areNews(BacklogIsFull));
  QVERIFY(!lost.areNews(BacklogIsFull));
  // The connection has ended; what is typed then is no line for the old server.
  QVERIFY(!lost.areNews(NothingTakesIt));
  QVERIFY(!lost.areNews(BacklogIsFull));
  QVERIFY(!lost.areNews(Sent));
  QVERIFY(lost.areNews(BacklogIsFull));

  net::LostLines fromTheFirstOn;
  QVERIFY(fromTheFirstOn.areNews(BacklogIsFull));
}

void TestSendLine::aServerThatTakesNothingIsHeldABoundedBacklog() {
  QTcpServer server;
  QVERIFY(server.listen(QHostAddress::LocalHost));
  QTcpSocket socket;
  socket.connectToHost(QHostAddress(QHostAddress::LocalHost), server.serverPort());
  QVERIFY(socket.waitForConnected());
  QTextStream stream(&socket);
  const QString line(1'000'000, u'x');
  auto result = net::SendResult::Sent;
  qint64 sent = 0;
  for (int i = 0; i < 100; ++i) {
    result = net::sendLine(stream, line);
    sent += result == net::SendResult::Sent ? 1 : 0;
  }
  QCOMPARE(result, net::SendResult::BacklogIsFull);
  QVERIFY(sent < 100);
  QVERIFY(socket.bytesToWrite() > 50'000'000);
  QVERIFY(socket.bytesToWrite() < net::largestBacklog + line.size() + 2);
  // Once the server takes them, all that waits comes whole, and further lines go.
  QVERIFY(server.waitForNewConnection());
  QTcpSocket* const peer = server.nextPendingConnection();
  qint64 received = 0;
  connect(peer, &QTcpSocket::readyRead, this, [&] { received += peer->readAll().size(); });
  const qint64 waiting = socket.bytesToWrite();
  QTRY_COMPARE_WITH_TIMEOUT(received, waiting, 60'000);
  QCOMPARE(received, sent * (line.size() + 2));
  QCOMPARE(net::sendLine(stream, QStringLiteral("look")), net::SendResult::Sent);
  QTRY_COMPARE(received, waiting + 6);
}

KELMORA_TEST_MAIN(TestSendLine)
#include "tst_sendline.moc"

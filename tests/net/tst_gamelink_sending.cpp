#include <QBuffer>
#include <QRandomGenerator>
#include <QTest>
#include <QTextStream>
#include <memory>

#include "Client.h"
#include "support/GameServer.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::net;

/// What a line for the server becomes on its way, and when it is lost.
class TestGameLinkSending : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void aLineGoesOutWithItsEnd_data();
  void aLineGoesOutWithItsEnd();
  void randomLinesAreTheBytesThatATextStreamWrites_data();
  void randomLinesAreTheBytesThatATextStreamWrites();
  void everyLineIsWrittenAtOnce();
  void aLongLineReachesTheServer();

  void withoutAConnectionALineIsLost();
  void afterADisconnectALineIsLost_data();
  void afterADisconnectALineIsLost();
  void afterTheServersEndALineIsLost();
  void afterAFailedAttemptLinesAreLost();
  void aLineThatAnswersTheLastTextIsLost();

  void aServerThatReadsNothingIsHeldABoundedBacklog();
  void theBeginningOfALossIsToldAnewForANewConnection();

 private:
  [[nodiscard]] bool connectClient();
  [[nodiscard]] SendResult sendLine(const QString& line) { return client_->link.sendLine(line); }
  /// Sends a hundred megabytes without giving the server a moment to read them.
  [[nodiscard]] QList<SendResult> sendTooMuch();

  std::unique_ptr<GameServer> server_;
  std::unique_ptr<Client> client_;
};

void TestGameLinkSending::init() {
  // No operation may make the toolkit print a warning.
  QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
  server_ = std::make_unique<GameServer>();
  client_ = std::make_unique<Client>();
  client_->server.port = server_->port();
}

void TestGameLinkSending::cleanup() {
  client_.reset();
  server_.reset();
}

bool TestGameLinkSending::connectClient() {
  const QTcpSocket* const before = server_->peer();
  client_->connectToServer();
  return QTest::qWaitFor([&] {
    return client_->host.enabledActions() == QStringLiteral("-D-") && server_->peer() != before;
  });
}

QList<SendResult> TestGameLinkSending::sendTooMuch() {
  const QString line(1'000'000, u'x');
  QList<SendResult> results;
  for (int i = 0; i < 100; ++i)
    results << sendLine(line);
  return results;
}

void TestGameLinkSending::aLineGoesOutWithItsEnd_data() {
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
  QTest::newRow("a line end inside is text") << "a\nb\r\nc" << QByteArray("a\nb\r\nc\r\n");
  QTest::newRow("a million characters")
      << QString(1000000, u'x') << QByteArray(1000000, 'x') + "\r\n";
  QTest::newRow("pairs across every buffer's edge")
      << u'x' + QStringLiteral("\U0001F600").repeated(50000)
      << 'x' + QByteArray("\xf0\x9f\x98\x80").repeated(50000) + "\r\n";
}

void TestGameLinkSending::aLineGoesOutWithItsEnd() {
  QFETCH(const QString, line);
  QFETCH(const QByteArray, bytes);
  QVERIFY(connectClient());
  QCOMPARE(sendLine(line), SendResult::Sent);
  QTRY_COMPARE(server_->received().size(), bytes.size());
  QVERIFY(server_->received() == bytes);
  // Half a pair at its end leaves nothing behind for the next line.
  QCOMPARE(sendLine(QStringLiteral("next")), SendResult::Sent);
  QTRY_COMPARE(server_->received().size(), bytes.size() + 6);
  QVERIFY(server_->received() == bytes + "next\r\n");
}

void TestGameLinkSending::randomLinesAreTheBytesThatATextStreamWrites_data() {
  QTest::addColumn<int>("lines");
  QTest::addColumn<int>("longestLine");
  QTest::newRow("short lines") << 5000 << 12;
  QTest::newRow("lines about as long as the stream's buffer") << 30 << 40000;
}

void TestGameLinkSending::randomLinesAreTheBytesThatATextStreamWrites() {
  QFETCH(const int, lines);
  QFETCH(const int, longestLine);
  QRandomGenerator random(20240229);
  const auto randomUnit = [&]() -> QChar {
    switch (random.bounded(5)) {
      case 0:  // the first half of a pair
        return QChar(0xd800 + random.bounded(0x400));
      case 1:  // the second half
        return QChar(0xdc00 + random.bounded(0x400));
      case 2:
        return QChar(random.bounded(0x10000));
      default:
        return QChar(random.bounded(0x80));
    }
  };
  QVERIFY(connectClient());
  QByteArrayList expected;
  for (int i = 0; i < lines; ++i) {
    QString line;
    for (int length = random.bounded(longestLine); length > 0; --length)
      line += randomUnit();
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QTextStream stream(&buffer);
    stream << line << "\r\n";
    stream.flush();
    expected << buffer.data();
    QCOMPARE(sendLine(line), SendResult::Sent);
  }
  const auto received = [&] { return server_->received().size(); };
  QVERIFY(QTest::qWaitFor([&] { return received() >= expected.join().size(); }));
  qsizetype begin = 0;
  for (const QByteArray& bytes : expected) {
    QCOMPARE(server_->received().mid(begin, bytes.size()).toHex(' '), bytes.toHex(' '));
    begin += bytes.size();
  }
  QCOMPARE(received(), begin);
}

void TestGameLinkSending::everyLineIsWrittenAtOnce() {
  QVERIFY(connectClient());
  for (int i = 1; i <= 3; ++i) {
    QCOMPARE(sendLine(QStringLiteral("a")), SendResult::Sent);
    QCOMPARE(client_->socket.bytesToWrite(), 3 * i);
  }
  QTRY_COMPARE(server_->received(), QByteArray("a\r\na\r\na\r\n"));
}

void TestGameLinkSending::aLongLineReachesTheServer() {
  QVERIFY(connectClient());
  const QString longLine(2000000, QChar(0x20ac));
  QCOMPARE(sendLine(QStringLiteral("look")), SendResult::Sent);
  QCOMPARE(sendLine(longLine), SendResult::Sent);
  const QByteArray expected = "look\r\n" + longLine.toUtf8() + "\r\n";
  QTRY_COMPARE(server_->received().size(), expected.size());
  QVERIFY(server_->received() == expected);
}

void TestGameLinkSending::withoutAConnectionALineIsLost() {
  QCOMPARE(sendLine(QStringLiteral("lost")), SendResult::NotConnected);
  QCOMPARE(client_->socket.bytesToWrite(), 0);
  QVERIFY(connectClient());
  QCOMPARE(sendLine(QStringLiteral("look")), SendResult::Sent);
  QTRY_COMPARE(server_->received(), QByteArray("look\r\n"));
}

void TestGameLinkSending::afterADisconnectALineIsLost_data() {
  QTest::addColumn<int>("waiting");
  QTest::addColumn<QAbstractSocket::SocketState>("state");
  QTest::newRow("the connection has ended") << 0 << QAbstractSocket::UnconnectedState;
  QTest::newRow("lines that wait are still sent") << 30'000'000 << QAbstractSocket::ClosingState;
}

void TestGameLinkSending::afterADisconnectALineIsLost() {
  QFETCH(const int, waiting);
  QFETCH(const QAbstractSocket::SocketState, state);
  QVERIFY(connectClient());
  client_->socket.write(QByteArray(waiting, 'x'));
  client_->link.disconnectFromServer();
  QCOMPARE(client_->socket.state(), state);
  QCOMPARE(sendLine(QStringLiteral("lost")), SendResult::NotConnected);
  QTRY_COMPARE(server_->peer()->state(), QAbstractSocket::UnconnectedState);
  QCOMPARE(server_->received().size(), waiting);
}

void TestGameLinkSending::afterTheServersEndALineIsLost() {
  QVERIFY(connectClient());
  server_->peer()->disconnectFromHost();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QVERIFY(client_->socket.isWritable());  // which alone says nothing
  QCOMPARE(sendLine(QStringLiteral("lost")), SendResult::NotConnected);
  QCOMPARE(client_->socket.bytesToWrite(), 0);
  QVERIFY(connectClient());
  QCOMPARE(sendLine(QStringLiteral("look")), SendResult::Sent);
  QTRY_COMPARE(server_->received(), QByteArray("look\r\n"));
}

void TestGameLinkSending::afterAFailedAttemptLinesAreLost() {
  // Nobody tells this link of the failure, so its socket stays open.
  RecordingHost host;
  QObject window;
  GameLink link(window, host);
  const RefusedPort refused;
  link.connectToServer({.hostName = QStringLiteral("127.0.0.1"), .port = refused.number()});
  QTRY_COMPARE(link.socket().error(), QAbstractSocket::ConnectionRefusedError);
  QVERIFY(link.socket().isWritable());
  int errors = 0;
  connect(&link.socket(), &QTcpSocket::errorOccurred, this, [&errors] { ++errors; });
  for (int i = 0; i < 1000; ++i)
    QCOMPARE(link.sendLine(QStringLiteral("lost")), SendResult::NotConnected);
  QCOMPARE(link.socket().bytesToWrite(), 0);
  QCOMPARE(errors, 0);
}

void TestGameLinkSending::aLineThatAnswersTheLastTextIsLost() {
  QVERIFY(connectClient());
  // So that the text is read when the end is told, not before.
  client_->ignoreText();
  client_->ignoreErrors();
  auto result = SendResult::Sent;
  client_->host.onRead = [&] { result = sendLine(QStringLiteral("answer")); };
  server_->send("last words");
  server_->peer()->disconnectFromHost();
  QTRY_COMPARE(client_->host.lines.last(), disconnectedText());
  QCOMPARE(client_->host.reads, QByteArrayList{"last words"});
  QCOMPARE(result, SendResult::NotConnected);
}

void TestGameLinkSending::aServerThatReadsNothingIsHeldABoundedBacklog() {
  QVERIFY(connectClient());
  const auto results = sendTooMuch();
  const qsizetype sent = results.count(SendResult::Sent);
  QVERIFY(sent > 50);
  QVERIFY(sent < 100);
  // The first loss is news, and those behind it are not.
  QCOMPARE(results.count(SendResult::LossBegins), 1);
  QCOMPARE(results.indexOf(SendResult::LossBegins), sent);
  QCOMPARE(results.count(SendResult::LossGoesOn), results.size() - sent - 1);
  const qint64 waiting = client_->socket.bytesToWrite();
  QVERIFY(waiting >= GameLink::largestBacklog);
  QVERIFY(waiting < GameLink::largestBacklog + 1'000'002);
  // When the server reads at last, it gets all that waits, and further lines.
  QTRY_COMPARE_WITH_TIMEOUT(server_->received().size(), waiting, 60'000);
  QCOMPARE(server_->received().size(), sent * 1'000'002);
  QCOMPARE(sendLine(QStringLiteral("look")), SendResult::Sent);
  QTRY_COMPARE(server_->received().size(), waiting + 6);
  // A line has been taken, so a new loss is news again.
  QCOMPARE(sendTooMuch().count(SendResult::LossBegins), 1);
}

void TestGameLinkSending::theBeginningOfALossIsToldAnewForANewConnection() {
  QVERIFY(connectClient());
  QCOMPARE(sendTooMuch().count(SendResult::LossBegins), 1);
  client_->socket.abort();
  QCOMPARE(sendLine(QStringLiteral("lost")), SendResult::NotConnected);
  QVERIFY(connectClient());
  QCOMPARE(sendTooMuch().count(SendResult::LossBegins), 1);
}

KELMORA_TEST_MAIN(TestGameLinkSending)
#include "tst_gamelink_sending.moc"

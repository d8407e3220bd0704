#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "Client.h"
#include "support/GameServer.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::net;

/// Which of the server's bytes make one read, and what is read before an end of
/// the connection is told.
class TestGameLinkReading : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void whatIsThereIsOneReadHoweverMuch_data();
  void whatIsThereIsOneReadHoweverMuch();
  void whatComesLaterIsAReadOfItsOwn();
  void nothingIsAReadOfNothing();
  void aServerThatNeverPausesHasToWait();

  void theRestIsReadBeforeTheEndIsTold();
  void theRestIsReadBeforeAnErrorIsTold();
  void anEndWithNothingLeftIsNoRead();
  void aClosedConnectionIsReadNoMore();

  void aDisconnectReadsWhatHasArrived();
  void aDisconnectWithNothingOnItsWayTellsOneLine();
  void aDisconnectThatFindsTheServersEndTellsOneLine_data();
  void aDisconnectThatFindsTheServersEndTellsOneLine();
  void aTimeOutAfterADisconnectIsToldAgain();

 private:
  void waitForBytes(qint64 count) {
    QVERIFY(QTest::qWaitFor([&] { return client_->socket.bytesAvailable() >= count; }));
  }

  std::unique_ptr<GameServer> server_;
  std::unique_ptr<Client> client_;
};

void TestGameLinkReading::init() {
  // No operation may make the toolkit print a warning.
  QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
  server_ = std::make_unique<GameServer>();
  client_ = std::make_unique<Client>();
  client_->server.port = server_->port();
  client_->connectToServer();
  QTRY_VERIFY(server_->peer() && client_->host.enabledActions() == QStringLiteral("-D-"));
  client_->host.story.clear();
}

void TestGameLinkReading::cleanup() {
  client_.reset();
  server_.reset();
}

void TestGameLinkReading::whatIsThereIsOneReadHoweverMuch_data() {
  QTest::addColumn<QByteArray>("data");
  QTest::newRow("two lines and a part of one") << QByteArray("one\r\ntwo\r\nhalf a l");
  QTest::newRow("a byte") << QByteArray("x");
  QTest::newRow("eight kilobytes and a byte") << QByteArray(8193, 'x');
  QTest::newRow("a megabyte of lines") << QByteArray("line\n").repeated(200'000);
  QTest::newRow("three megabytes without a line end") << QByteArray(3'000'000, 'x');
  QTest::newRow("a line end and then none") << '\n' + QByteArray(100'000, 'x');
}

void TestGameLinkReading::whatIsThereIsOneReadHoweverMuch() {
  QFETCH(const QByteArray, data);
  client_->ignoreText();
  server_->send(data);
  waitForBytes(data.size());
  client_->link.readSocketData();
  QCOMPARE(client_->host.reads.size(), 1);
  QVERIFY(client_->host.reads.first() == data);
  QCOMPARE(client_->socket.bytesAvailable(), 0);
}

void TestGameLinkReading::whatComesLaterIsAReadOfItsOwn() {
  server_->send("first");
  QTRY_COMPARE(client_->host.reads, QByteArrayList{"first"});
  server_->send("second");
  QTRY_COMPARE(client_->host.reads, (QByteArrayList{"first", "second"}));
}

void TestGameLinkReading::nothingIsAReadOfNothing() {
  client_->link.readSocketData();
  QCOMPARE(client_->host.reads, QByteArrayList{QByteArray()});
}

void TestGameLinkReading::aServerThatNeverPausesHasToWait() {
  // More than any system buffers. The client does not return to its event loop
  // meanwhile, and takes nothing into memory.
  constexpr int sent = 64 * 1024 * 1024;
  server_->send(QByteArray(sent, 'x'));
  constexpr int pauseMs = 10;
  for (int i = 0; i < 50; ++i)
    (void)server_->peer()->waitForBytesWritten(pauseMs);
  QVERIFY(server_->peer()->bytesToWrite() > 0);
  QCOMPARE(client_->socket.bytesAvailable(), 0);
  QVERIFY(QTest::qWaitFor([&] { return client_->host.reads.join().size() == sent; }, 30000));
}

void TestGameLinkReading::theRestIsReadBeforeTheEndIsTold() {
  client_->ignoreText();
  client_->ignoreErrors();  // before an error, too, the rest would be read
  const QByteArray all = QByteArray("line\n").repeated(20000);
  server_->send(all);
  server_->peer()->disconnectFromHost();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.reads, QByteArrayList{all});
  QCOMPARE(client_->host.story, (QStringList{QString::fromLatin1(all), disconnectedText()}));
}

void TestGameLinkReading::theRestIsReadBeforeAnErrorIsTold() {
  client_->ignoreText();
  server_->send("last words");
  waitForBytes(10);
  client_->link.displaySocketError(QAbstractSocket::NetworkError);
  const auto error = QStringLiteral("<i>Error: Socket error 7</i>");
  QCOMPARE(client_->host.story, (QStringList{QStringLiteral("last words"), error}));
  // Once read it is read no more.
  client_->link.displaySocketError(QAbstractSocket::NetworkError);
  QCOMPARE(client_->host.story, (QStringList{QStringLiteral("last words"), error, error}));
}

void TestGameLinkReading::anEndWithNothingLeftIsNoRead() {
  server_->peer()->disconnectFromHost();
  QTRY_COMPARE(client_->host.story, QStringList{disconnectedText()});
  QCOMPARE(client_->host.reads, QByteArrayList());
}

void TestGameLinkReading::aClosedConnectionIsReadNoMore() {
  client_->ignoreText();
  server_->send("line\n");
  waitForBytes(5);
  client_->socket.close();
  client_->link.disconnectFromServer();
  QTRY_COMPARE(client_->host.story, QStringList{disconnectedText()});
  QCOMPARE(client_->host.reads, QByteArrayList());
}

void TestGameLinkReading::aDisconnectReadsWhatHasArrived() {
  server_->send("in the system's buffer");
  QCOMPARE(server_->peer()->bytesToWrite(), 0);
  QCOMPARE(client_->host.reads, QByteArrayList());
  client_->link.disconnectFromServer();
  QCOMPARE(client_->host.reads, QByteArrayList{"in the system's buffer"});
  QTRY_COMPARE(client_->host.story,
               (QStringList{QStringLiteral("in the system's buffer"), disconnectedText()}));
}

void TestGameLinkReading::aDisconnectWithNothingOnItsWayTellsOneLine() {
  const QSignalSpy errors(&client_->socket, &QTcpSocket::errorOccurred);
  client_->link.disconnectFromServer();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QCOMPARE(client_->host.story, QStringList{disconnectedText()});
  QCOMPARE(client_->host.cursorMoves, 0);  // as every error that is told moves it
  // That there is nothing to read is a time-out to the toolkit.
  for (const QList<QVariant>& error : errors)
    QCOMPARE(error.first().value<QAbstractSocket::SocketError>(),
             QAbstractSocket::SocketTimeoutError);
}

void TestGameLinkReading::aDisconnectThatFindsTheServersEndTellsOneLine_data() {
  QTest::addColumn<QByteArray>("lastWords");
  QTest::newRow("with text before it") << QByteArray("last words");
  QTest::newRow("with nothing before it") << QByteArray();
}

void TestGameLinkReading::aDisconnectThatFindsTheServersEndTellsOneLine() {
  QFETCH(const QByteArray, lastWords);
  server_->send(lastWords);
  server_->peer()->disconnectFromHost();
  client_->link.disconnectFromServer();
  QTRY_COMPARE(client_->host.enabledActions(), QStringLiteral("C-P"));
  QStringList told{disconnectedText()};
  if (!lastWords.isEmpty())
    told.prepend(QString::fromLatin1(lastWords));
  QCOMPARE(client_->host.story, told);
}

void TestGameLinkReading::aTimeOutAfterADisconnectIsToldAgain() {
  client_->link.disconnectFromServer();
  client_->host.story.clear();
  client_->link.displaySocketError(QAbstractSocket::SocketTimeoutError);
  QCOMPARE(client_->host.story, QStringList{QStringLiteral("<i>Error: Socket error 5</i>")});
}

KELMORA_TEST_MAIN(TestGameLinkReading)
#include "tst_gamelink_reading.moc"

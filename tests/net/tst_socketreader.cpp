#include <QSignalSpy>

#include "net/SocketReader.h"
#include "support/GameServer.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::net;

/// What of the server's bytes makes one read.
class TestSocketReader : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void whatIsThereIsOneReadHoweverMuch_data();
  void whatIsThereIsOneReadHoweverMuch();
  void whatComesLaterIsAReadOfItsOwn();
  void nothingIsAReadOfNothing();
  void theRestIsReadOnceAndOnlyIfThereIsAny();
  void aClosedConnectionIsReadNoMore();
  void whatHasArrivedIsReadThoughNobodyWasTold();
  void askingForWhatIsNotThereTellsNothing();
  void askingWithoutAConnectionDoesNothing();
  void askingDuringAnAttemptLeavesItAlone();
  void askingFindsTheEndOfTheConnection();
  void aServerThatNeverPausesHasToWait();

 private:
  void waitForBytes(qint64 count) {
    QVERIFY(QTest::qWaitFor([&] { return socket_->bytesAvailable() >= count; }));
  }
  /// As the window does it.
  void readWhenTold() {
    connect(socket_.get(), &QTcpSocket::readyRead, this, [this] { reader_->readSocketData(); });
  }

  std::unique_ptr<GameServer> server_;
  std::unique_ptr<QTcpSocket> socket_;
  QByteArrayList reads_;
  std::unique_ptr<SocketReader> reader_;
};

void TestSocketReader::init() {
  reads_.clear();
  server_ = std::make_unique<GameServer>();
  socket_ = std::make_unique<QTcpSocket>();
  reader_ =
      std::make_unique<SocketReader>(*socket_, [this](const QByteArray& data) { reads_ << data; });
  socket_->connectToHost(QHostAddress(QHostAddress::LocalHost), server_->port());
  QTRY_VERIFY(server_->peer() && socket_->state() == QAbstractSocket::ConnectedState);
}

void TestSocketReader::cleanup() {
  reader_.reset();
  socket_.reset();
  server_.reset();
}

void TestSocketReader::whatIsThereIsOneReadHoweverMuch_data() {
  QTest::addColumn<QByteArray>("data");
  QTest::newRow("two lines and a part of one") << QByteArray("one\r\ntwo\r\nhalf a l");
  QTest::newRow("a byte") << QByteArray("x");
  QTest::newRow("eight kilobytes and a byte") << QByteArray(8193, 'x');
  QTest::newRow("a megabyte of lines") << QByteArray("line\n").repeated(200'000);
  QTest::newRow("three megabytes without a line end") << QByteArray(3'000'000, 'x');
  QTest::newRow("a line end and then none") << '\n' + QByteArray(100'000, 'x');
}

void TestSocketReader::whatIsThereIsOneReadHoweverMuch() {
  QFETCH(const QByteArray, data);
  server_->send(data);
  waitForBytes(data.size());
  reader_->readSocketData();
  QCOMPARE(reads_.size(), 1);
  QVERIFY(reads_.first() == data);
  QCOMPARE(socket_->bytesAvailable(), 0);
}

void TestSocketReader::whatComesLaterIsAReadOfItsOwn() {
  readWhenTold();
  server_->send("first");
  QTRY_COMPARE(reads_, QByteArrayList{"first"});
  server_->send("second");
  QTRY_COMPARE(reads_, (QByteArrayList{"first", "second"}));
}

void TestSocketReader::nothingIsAReadOfNothing() {
  reader_->readSocketData();
  QCOMPARE(reads_, QByteArrayList{QByteArray()});
}

void TestSocketReader::theRestIsReadOnceAndOnlyIfThereIsAny() {
  reader_->readRest();
  QCOMPARE(reads_.size(), 0);
  const QByteArray all = QByteArray("line\n").repeated(20000);
  server_->send(all);
  waitForBytes(all.size());
  reader_->readRest();
  QCOMPARE(reads_, QByteArrayList{all});
  reader_->readRest();
  QCOMPARE(reads_.size(), 1);
}

void TestSocketReader::aClosedConnectionIsReadNoMore() {
  QTest::failOnWarning(QRegularExpression(".*"));
  server_->send("line\n");
  waitForBytes(5);
  socket_->close();
  reader_->readRest();
  reader_->readArrived();
  QCOMPARE(reads_.size(), 0);
}

void TestSocketReader::whatHasArrivedIsReadThoughNobodyWasTold() {
  readWhenTold();
  server_->send("in the system's buffer");
  QCOMPARE(server_->peer()->bytesToWrite(), 0);
  QCOMPARE(reads_.size(), 0);
  reader_->readArrived();
  QCOMPARE(reads_, QByteArrayList{"in the system's buffer"});
  QVERIFY(!reader_->isAsking());
}

void TestSocketReader::askingForWhatIsNotThereTellsNothing() {
  readWhenTold();
  bool wasAsking = false;
  connect(socket_.get(), &QTcpSocket::errorOccurred, this,
          [&] { wasAsking = reader_->isAsking(); });
  const QSignalSpy errors(socket_.get(), &QTcpSocket::errorOccurred);
  reader_->readArrived();
  QCOMPARE(reads_.size(), 0);
  // The toolkit calls it a time-out, by which the window knows it.
  for (const QList<QVariant>& error : errors)
    QCOMPARE(error.first().value<QAbstractSocket::SocketError>(),
             QAbstractSocket::SocketTimeoutError);
  QVERIFY(errors.isEmpty() || wasAsking);
  QVERIFY(!reader_->isAsking());
  QCOMPARE(socket_->state(), QAbstractSocket::ConnectedState);
  server_->send("later");
  QTRY_COMPARE(reads_, QByteArrayList{"later"});
}

void TestSocketReader::askingWithoutAConnectionDoesNothing() {
  QTest::failOnWarning(QRegularExpression(".*"));
  QTcpSocket idle;
  const QSignalSpy errors(&idle, &QTcpSocket::errorOccurred);
  SocketReader reader(idle, [this](const QByteArray& data) { reads_ << data; });
  reader.readArrived();
  QCOMPARE(errors.size(), 0);
  QCOMPARE(reads_.size(), 0);
}

void TestSocketReader::askingDuringAnAttemptLeavesItAlone() {
  QTcpSocket socket;
  SocketReader reader(socket, [this](const QByteArray& data) { reads_ << data; });
  const QSignalSpy errors(&socket, &QTcpSocket::errorOccurred);
  socket.connectToHost(QHostAddress(QHostAddress::LocalHost), server_->port());
  QCOMPARE(socket.state(), QAbstractSocket::ConnectingState);
  reader.readArrived();
  QCOMPARE(socket.state(), QAbstractSocket::ConnectingState);
  QTRY_COMPARE(socket.state(), QAbstractSocket::ConnectedState);
  QCOMPARE(errors.size(), 0);
}

void TestSocketReader::askingFindsTheEndOfTheConnection() {
  readWhenTold();
  const QSignalSpy ended(socket_.get(), &QTcpSocket::disconnected);
  server_->send("last words");
  server_->peer()->disconnectFromHost();
  reader_->readArrived();
  QCOMPARE(reads_, QByteArrayList{"last words"});
  QCOMPARE(ended.size(), 0);
  reader_->readArrived();
  QCOMPARE(ended.size(), 1);
  QCOMPARE(reads_.size(), 1);
  QVERIFY(!reader_->isAsking());
}

void TestSocketReader::aServerThatNeverPausesHasToWait() {
  readWhenTold();
  // More than any system's buffers hold; the client does not get to its event
  // loop meanwhile, and keeps nothing itself.
  constexpr int sent = 64 * 1024 * 1024;
  server_->send(QByteArray(sent, 'x'));
  for (int i = 0; i < 50; ++i)
    (void)server_->peer()->waitForBytesWritten(10);
  QVERIFY(server_->peer()->bytesToWrite() > 0);
  QCOMPARE(socket_->bytesAvailable(), 0);
  QVERIFY(QTest::qWaitFor([&] { return reads_.join().size() == sent; }, 30000));
}

KELMORA_TEST_MAIN(TestSocketReader)
#include "tst_socketreader.moc"

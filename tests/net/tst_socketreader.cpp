#include <QThread>

#include "net/SocketReader.h"
#include "support/GameServer.h"
#include "support/ScratchMain.h"

/// How the server's bytes are cut into reads.
class TestSocketReader : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void whatIsThereIsOneRead();
  void nothingIsAReadOfNothing();
  void muchIsCutBehindLineEnds();
  void aLineWithoutEndIsCutAnyway();
  void keysGetTheirTurnBetweenTwoReads();
  void drainingLeavesNothingBehind();
  void aClosedConnectionIsReadNoMore();
  void aServerThatNeverPausesHasToWait();

 private:
  void waitForBytes(qint64 count) {
    QVERIFY(QTest::qWaitFor([&] { return socket_->bytesAvailable() >= count; }));
  }

  std::unique_ptr<GameServer> server_;
  std::unique_ptr<QTcpSocket> socket_;
  QByteArrayList reads_;
  std::function<void()> consumes_;
  std::unique_ptr<SocketReader> reader_;
};

void TestSocketReader::init() {
  reads_.clear();
  reader_.reset();
  server_ = std::make_unique<GameServer>();
  socket_ = std::make_unique<QTcpSocket>();
  consumes_ = [] {};
  reader_ = std::make_unique<SocketReader>(*socket_, [this](const QByteArray& data) {
    reads_ << data;
    consumes_();
  });
  reader_->limitWaiting();
  socket_->connectToHost(QHostAddress(QHostAddress::LocalHost), server_->port());
  QTRY_VERIFY(server_->peer() && socket_->state() == QAbstractSocket::ConnectedState);
}

void TestSocketReader::whatIsThereIsOneRead() {
  server_->send("one\r\ntwo\r\nhalf a l");
  waitForBytes(18);
  reader_->readSocketData();
  QCOMPARE(reads_, QByteArrayList{"one\r\ntwo\r\nhalf a l"});
}

void TestSocketReader::nothingIsAReadOfNothing() {
  reader_->readSocketData();
  QCOMPARE(reads_, QByteArrayList{QByteArray()});
}

void TestSocketReader::muchIsCutBehindLineEnds() {
  const QByteArray line = QByteArray(78, 'x') + "\r\n";
  const QByteArray all = line.repeated(1000) + "the last, without an end";
  server_->send(all);
  waitForBytes(all.size());
  reader_->readSocketData();
  QTRY_COMPARE(reads_.join(), all);
  QVERIFY(reads_.size() > 4);
  for (const QByteArray& read : reads_) {
    QVERIFY(read.size() <= SocketReader::readSize);
    QVERIFY(read.endsWith('\n') || read.endsWith("without an end"));
  }
}

void TestSocketReader::aLineWithoutEndIsCutAnyway() {
  const QByteArray all(100000, 'x');
  server_->send(all);
  waitForBytes(all.size());
  reader_->readSocketData();
  QCOMPARE(reads_.first().size(), SocketReader::readSize);
  QTRY_COMPARE(reads_.join(), all);
}

void TestSocketReader::keysGetTheirTurnBetweenTwoReads() {
  server_->send(QByteArray("line\n").repeated(20000));
  waitForBytes(100000);
  int readsBeforeTheKey = 0;
  consumes_ = [] { QThread::msleep(SocketReader::turn + 1); };
  QTimer::singleShot(0, this, [&] { readsBeforeTheKey = static_cast<int>(reads_.size()); });
  reader_->readSocketData();
  QCOMPARE(reads_.size(), 1);
  QTRY_VERIFY(readsBeforeTheKey > 0);
  QVERIFY(readsBeforeTheKey <= 2);
  QTRY_COMPARE(reads_.join().size(), 100000);
}

void TestSocketReader::drainingLeavesNothingBehind() {
  const QByteArray all = QByteArray("line\n").repeated(20000);
  server_->send(all);
  waitForBytes(all.size());
  reader_->drain();
  QCOMPARE(reads_.join(), all);
  const qsizetype count = reads_.size();
  QTest::qWait(10);
  QCOMPARE(reads_.size(), count);
}

void TestSocketReader::aClosedConnectionIsReadNoMore() {
  QTest::failOnWarning(QRegularExpression(".*"));
  server_->send(QByteArray("line\n").repeated(20000));
  waitForBytes(100000);
  consumes_ = [] { QThread::msleep(SocketReader::turn + 1); };
  reader_->readSocketData();
  QCOMPARE(reads_.size(), 1);
  socket_->close();
  QTest::qWait(10);
  QCOMPARE(reads_.size(), 1);
}

void TestSocketReader::aServerThatNeverPausesHasToWait() {
  server_->send(QByteArray(4 * 1024 * 1024, 'x'));
  waitForBytes(SocketReader::waitingSize);
  QTest::qWait(50);
  QCOMPARE(socket_->bytesAvailable(), SocketReader::waitingSize);
}

KELMORA_TEST_MAIN(TestSocketReader)
#include "tst_socketreader.moc"

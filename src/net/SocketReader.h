#pragma once

#include <QByteArray>
#include <QTimer>
#include <functional>

class QTcpSocket;

/// Takes what the server has sent in reads of bounded size. What is there is
/// one read, unless it is so much that keys and paint would have to wait for
/// it; then it is cut behind a line end, and the rest follows, some reads in
/// each turn of the event loop.
class SocketReader {
 public:
  /// A read grows no further than this many bytes, if a line ends in them.
  static constexpr qint64 readSize = qint64{8} * 1024;
  /// Milliseconds after which a turn begins no further read.
  static constexpr qint64 turn = 4;
  /// What may wait in the socket; beyond it the server has to wait. As much as
  /// a server may say last: what has not come so far when it is found closed is
  /// lost.
  static constexpr qint64 waitingSize = qint64{1024} * 1024;

  using Consumer = std::function<void(const QByteArray& data)>;

  /// The socket outlives the reader.
  SocketReader(QTcpSocket& socket, Consumer consume);

  /// The reads of one turn; one, also when nothing is there.
  void readSocketData();
  /// Reads until nothing waits: a connection that ends shows all of its text
  /// before its end is told.
  void drain();
  /// To be called before each attempt to connect.
  void limitWaiting();

 private:
  void readOnce();

  QTcpSocket& socket_;
  Consumer consume_;
  QTimer nextTurn_;
};

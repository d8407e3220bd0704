#pragma once

#include <QByteArray>
#include <functional>

class QTcpSocket;

namespace kelmora::net {

/// Takes what the server has sent: what is there is one read, whole, however
/// much it is. The socket keeps no limit of its own, which would only cut a
/// read: what waits unread is in the system's buffer, and when that is full the
/// server has to wait.
class SocketReader {
 public:
  using Consumer = std::function<void(const QByteArray& data)>;

  /// The socket outlives the reader.
  SocketReader(QTcpSocket& socket, Consumer consume);

  /// One read, also when nothing is there.
  void readSocketData();
  /// A read of what is left, if anything is: a connection that ends shows all
  /// of its text before its end is told.
  void readRest();
  /// Has what has come so far, and is not told of yet, told: to be called
  /// before the player's own end of a connection. A connection that turns out
  /// to be at its end already reports that by itself.
  void readArrived();
  /// Whether the socket is just being asked for what has arrived. That there is
  /// nothing is no error then.
  [[nodiscard]] bool isAsking() const { return asking_; }

 private:
  QTcpSocket& socket_;
  Consumer consume_;
  bool asking_ = false;
};

}  // namespace kelmora::net

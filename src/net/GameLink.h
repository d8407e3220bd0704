#pragma once

#include <QAbstractSocket>
#include <QString>

class QTcpSocket;

namespace kelmora::net {

class LinkHost;

/// Where the game is.
struct Server {
  QString hostName;
  int port = 0;  ///< as the player entered it; the low 16 bits are connected to
};

/// What became of a line that was to be sent.
enum class SendResult {
  Sent,
  NotConnected,  ///< lost; the player is not told
  LossBegins,    ///< lost, because too much is waiting: the player has to be told
  LossGoesOn,    ///< lost for the same reason, which the player has been told
};

/// The link to the game: its socket, the bytes that come from it and the lines
/// that wait to be sent. It also tells the player, by status lines, what becomes
/// of the connection.
class GameLink {
 public:
  /// What may wait to be sent, in bytes, before further lines are lost. Few
  /// scripts send as much at once. Without a limit, a server that never reads
  /// but makes triggers answer it could fill the client's memory.
  static constexpr qint64 largestBacklog = qint64{64} * 1024 * 1024;

  /// The socket becomes a child of the window. Window and host outlive the link.
  GameLink(QObject& window, LinkHost& host);
  ~GameLink();
  Q_DISABLE_COPY_MOVE(GameLink)

  /// Its signals have to be connected to the four operations for them below.
  [[nodiscard]] QTcpSocket& socket() { return socket_; }

  /// Begins an attempt to connect. Another attempt or connection that has not
  /// ended yet is aborted first.
  void connectToServer(const Server& server);
  /// Reads what has arrived, then closes the connection; lines that wait are
  /// still sent. An attempt to connect is aborted at once.
  void disconnectFromServer();

  // The socket's signals lead to these: errorOccurred(), readyRead(), connected()
  // and disconnected().
  void displaySocketError(QAbstractSocket::SocketError error);
  void readSocketData();
  void clientConnected();
  void clientDisconnected();

  /// Writes the line, which comes without a line end, as UTF-8 with "\r\n"
  /// behind it. During an attempt to connect it waits for the connection.
  [[nodiscard]] SendResult sendLine(const QString& line);

 private:
  void readArrived();
  void readRest();
  void abort();

  LinkHost& host_;
  QTcpSocket& socket_;
  bool askingForData_ = false;
  bool losingLines_ = false;
};

}  // namespace kelmora::net

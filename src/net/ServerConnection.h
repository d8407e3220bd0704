#pragma once

#include <QAbstractSocket>
#include <QString>

class QTcpSocket;

namespace kelmora::settings {
struct ClientSettings;
}

namespace kelmora::net {

/// The toolbar actions whose state follows the connection.
enum class ConnectionAction { Connect, Disconnect, ProxySettings };

/// What the connection needs of the window.
class ConnectionHost {
 public:
  ConnectionHost() = default;
  Q_DISABLE_COPY_MOVE(ConnectionHost)

  /// Puts the pane's text cursor at the end of its document.
  virtual void moveCursorToEnd() = 0;
  /// Appends one paragraph of HTML in the status colour (the opening span of
  /// the white of the normal palette goes before it), the text cursor at the
  /// end before and after.
  virtual void appendStatusLine(const QString& html) = 0;
  virtual void setActionEnabled(ConnectionAction action, bool enabled) = 0;
  virtual void focusInputBar() = 0;

 protected:
  ~ConnectionHost() = default;
};

/// Connects to the server and reports what becomes of it. Not an object of its
/// own life: the window forwards its slots to the operations of the same name,
/// and owns socket, record and host, which all outlive this.
class ServerConnection {
 public:
  ServerConnection(QTcpSocket& socket, const settings::ClientSettings& settings,
                   ConnectionHost& host)
      : socket_(socket), settings_(settings), host_(host) {}

  /// Starts an attempt; one that is under way, or a connection that still
  /// closes, is aborted first.
  void connectToServer();
  /// Closes the connection, or aborts the attempt at once.
  void disconnectFromServer();

  void clientConnected();
  void clientDisconnected();
  void displaySocketError(QAbstractSocket::SocketError error);

 private:
  QTcpSocket& socket_;
  const settings::ClientSettings& settings_;
  ConnectionHost& host_;
};

}  // namespace kelmora::net

#pragma once

#include <QHostAddress>
#include <QNetworkProxy>
#include <QStringList>
#include <QTcpSocket>
#include <map>

#include "net/ServerConnection.h"
#include "settings/ClientSettings.h"

using namespace kelmora;
using namespace kelmora::net;
using namespace kelmora::settings;

/// A window's stand-in: keeps what it is told.
class RecordingHost final : public ConnectionHost {
 public:
  void moveCursorToEnd() override { ++cursorMoves; }
  void appendStatusLine(const QString& html) override { lines << html; }
  void setActionEnabled(ConnectionAction action, bool enabled) override {
    actions[action] = enabled;
  }
  void focusInputBar() override { ++focusings; }

  /// Connect, Disconnect, Proxy settings: "C" or "-", "D" or "-", "P" or "-".
  [[nodiscard]] QString enabledActions() const {
    const auto shown = [this](ConnectionAction action, char letter) {
      return QLatin1Char(actions.at(action) ? letter : '-');
    };
    return QString(shown(ConnectionAction::Connect, 'C')) +
           shown(ConnectionAction::Disconnect, 'D') + shown(ConnectionAction::ProxySettings, 'P');
  }

  QStringList lines;
  std::map<ConnectionAction, bool> actions{{ConnectionAction::Connect, true},
                                           {ConnectionAction::Disconnect, false},
                                           {ConnectionAction::ProxySettings, true}};
  int cursorMoves = 0;
  int focusings = 0;
};

/// A socket wired to a connection as the window wires it.
struct Client {
  Client() {
    settings.hostName = QStringLiteral("127.0.0.1");
    QObject::connect(&socket, &QTcpSocket::errorOccurred, &socket,
                     [this](auto error) { connection.displaySocketError(error); });
    QObject::connect(&socket, &QTcpSocket::connected, &socket,
                     [this] { connection.clientConnected(); });
    QObject::connect(&socket, &QTcpSocket::disconnected, &socket,
                     [this] { connection.clientDisconnected(); });
  }
  ~Client() { socket.disconnect(); }
  Q_DISABLE_COPY_MOVE(Client)

  [[nodiscard]] QString attempt() const {
    return QStringLiteral("<i>Attempting to connect to %1 on port %2...</i>")
        .arg(settings.hostName)
        .arg(settings.port);
  }

  ClientSettings settings;
  RecordingHost host;
  QTcpSocket socket;
  ServerConnection connection{socket, settings, host};
};

/// A port of this machine on which nothing answers while this object lives:
/// it is taken, but nobody listens.
class RefusedPort {
 public:
  [[nodiscard]] quint16 number() const { return holder_.localPort(); }

 private:
  struct Holder : QTcpSocket {
    Holder() {
      setProxy(QNetworkProxy::NoProxy);
      bind(QHostAddress::LocalHost);
    }
  } holder_;
};

inline QString connectedLine() {
  return QStringLiteral("<i>Connected to host!</i>");
}
inline QString disconnectedLine() {
  return QStringLiteral("<i>Disconnected from host!</i>");
}

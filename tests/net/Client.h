#pragma once

#include <QHostAddress>
#include <QNetworkProxy>
#include <QStringList>
#include <QTcpSocket>
#include <functional>
#include <map>

#include "net/GameLink.h"
#include "net/LinkHost.h"

using namespace kelmora;
using namespace kelmora::net;

/// Stands for the window and keeps what it is told.
class RecordingHost final : public LinkHost {
 public:
  void takeServerBytes(const QByteArray& bytes) override {
    reads << bytes;
    story << QString::fromUtf8(bytes);
    if (onRead)
      onRead();
  }
  [[nodiscard]] qsizetype statusLineRoom() const override { return room; }
  void appendStatusLine(const QString& html) override {
    lines << html;
    story << html;
  }
  void moveCursorToEnd() override { ++cursorMoves; }
  void setActionEnabled(ConnectionAction action, bool enabled) override {
    actions[action] = enabled;
  }
  void focusInputBar() override { ++focusings; }

  /// One letter for each action that is enabled, a "-" for each that is not:
  /// "C" for Connect, "D" for Disconnect, "P" for Proxy settings.
  [[nodiscard]] QString enabledActions() const {
    const auto shown = [this](ConnectionAction action, char letter) {
      return QLatin1Char(actions.at(action) ? letter : '-');
    };
    return QString(shown(ConnectionAction::Connect, 'C')) +
           shown(ConnectionAction::Disconnect, 'D') + shown(ConnectionAction::ProxySettings, 'P');
  }

  QByteArrayList reads;
  QStringList lines;
  QStringList story;  ///< reads and lines, in the order in which they came
  std::function<void()> onRead;
  std::map<ConnectionAction, bool> actions{{ConnectionAction::Connect, true},
                                           {ConnectionAction::Disconnect, false},
                                           {ConnectionAction::ProxySettings, true}};
  qsizetype room = 995;
  int cursorMoves = 0;
  int focusings = 0;
};

/// A link whose socket is connected to it as the window connects it.
struct Client {
  Client() {
    QObject::connect(&socket, &QTcpSocket::errorOccurred, &window,
                     [this](auto error) { link.displaySocketError(error); });
    QObject::connect(&socket, &QTcpSocket::readyRead, &window, [this] { link.readSocketData(); });
    QObject::connect(&socket, &QTcpSocket::connected, &window, [this] { link.clientConnected(); });
    QObject::connect(&socket, &QTcpSocket::disconnected, &window,
                     [this] { link.clientDisconnected(); });
  }
  Q_DISABLE_COPY_MOVE(Client)

  void connectToServer() { link.connectToServer(server); }
  /// From now on the link is not told that text has come.
  void ignoreText() { QObject::disconnect(&socket, &QTcpSocket::readyRead, nullptr, nullptr); }
  /// From now on the link is not told of errors.
  void ignoreErrors() {
    QObject::disconnect(&socket, &QTcpSocket::errorOccurred, nullptr, nullptr);
  }
  [[nodiscard]] QString attempt() const {
    return QStringLiteral("<i>Attempting to connect to %1 on port %2...</i>")
        .arg(server.hostName)
        .arg(server.port);
  }

  Server server{.hostName = QStringLiteral("127.0.0.1"), .port = 5000};
  RecordingHost host;
  QObject window;
  GameLink link{window, host};
  QTcpSocket& socket = link.socket();
};

/// A port of this computer that is taken, but on which nobody listens, so that
/// every attempt to connect to it is refused as long as this object lives.
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

inline QString connectedText() {
  return QStringLiteral("<i>Connected to host!</i>");
}
inline QString disconnectedText() {
  return QStringLiteral("<i>Disconnected from host!</i>");
}

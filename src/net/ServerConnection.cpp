#include "net/ServerConnection.h"

#include <QTcpSocket>
#include <array>
#include <optional>

#include "settings/ClientSettings.h"

namespace kelmora::net {

namespace {

struct ErrorLine {
  QAbstractSocket::SocketError error;
  const char* text;  ///< null: nothing is shown
};

constexpr std::array<ErrorLine, 3> errorLines{{
    {QAbstractSocket::RemoteHostClosedError, nullptr},  // the end of the connection tells it
    {QAbstractSocket::HostNotFoundError, "Host not found"},
    {QAbstractSocket::ConnectionRefusedError, "Connection refused by the peer"},
}};

std::optional<QString> errorText(QAbstractSocket::SocketError error) {
  for (const ErrorLine& line : errorLines) {
    if (line.error != error)
      continue;
    if (line.text == nullptr)
      return std::nullopt;
    return QLatin1String(line.text);
  }
  return QStringLiteral("Socket error %1").arg(static_cast<int>(error));
}

QString italic(const QString& text) {
  return QStringLiteral("<i>%1</i>").arg(text);
}

// A status line with its opening span never has more than 1023 characters: an
// overlong host name is cut, what stands around it is not.
QString attemptText(const settings::ClientSettings& settings) {
  constexpr qsizetype longestLine = 1023;
  const qsizetype span = QByteArrayLiteral("<span style=\"color:#BDBDBD\">").size();
  const QString before = QStringLiteral("Attempting to connect to ");
  const QString after = QStringLiteral(" on port %1...").arg(settings.port);
  const qsizetype room = longestLine - span - italic(before + after).size();
  // Shown as the 8-bit, zero-ended text that it becomes, "?" for what has no place in it.
  const QString host = QString::fromLatin1(settings.hostName.left(room).toLatin1().constData());
  return italic(before + host + after);
}

}  // namespace

void ServerConnection::connectToServer() {
  if (socket_.state() != QAbstractSocket::UnconnectedState)
    socket_.abort();
  host_.appendStatusLine(attemptText(settings_));
  socket_.connectToHost(settings_.hostName, static_cast<quint16>(settings_.port));
  // An attempt that failed on the spot has already been reported and has
  // enabled the action again.
  if (socket_.state() != QAbstractSocket::UnconnectedState)
    host_.setActionEnabled(ConnectionAction::Connect, false);
  host_.focusInputBar();
}

void ServerConnection::disconnectFromServer() {
  // Closing would wait for an attempt to come to its end, connected or not.
  if (socket_.state() == QAbstractSocket::HostLookupState ||
      socket_.state() == QAbstractSocket::ConnectingState)
    socket_.abort();
  else
    socket_.close();
  host_.setActionEnabled(ConnectionAction::Connect, true);
  host_.setActionEnabled(ConnectionAction::Disconnect, false);
  host_.focusInputBar();
}

void ServerConnection::clientConnected() {
  host_.appendStatusLine(italic(QStringLiteral("Connected to host!")));
  host_.setActionEnabled(ConnectionAction::Disconnect, true);
  host_.setActionEnabled(ConnectionAction::ProxySettings, false);
}

void ServerConnection::clientDisconnected() {
  host_.appendStatusLine(italic(QStringLiteral("Disconnected from host!")));
  host_.setActionEnabled(ConnectionAction::Connect, true);
  host_.setActionEnabled(ConnectionAction::Disconnect, false);
  host_.setActionEnabled(ConnectionAction::ProxySettings, true);
}

void ServerConnection::displaySocketError(QAbstractSocket::SocketError error) {
  // Lines typed during an attempt wait in the socket. When it fails they are
  // lost, lest they fail once more by themselves or reach a later connection.
  if (socket_.state() == QAbstractSocket::UnconnectedState) {
    socket_.abort();  // empties the socket,
    socket_.close();  // which is an open device until then
  }
  if (const auto text = errorText(error))
    host_.appendStatusLine(italic(QStringLiteral("Error: ") + *text));
  host_.moveCursorToEnd();
  host_.setActionEnabled(ConnectionAction::Connect, true);
}

}  // namespace kelmora::net

#pragma once

#include <QAbstractSocket>
#include <QString>
#include <optional>

namespace kelmora::net {

// What the player reads about the connection: lines of HTML, in italics.

/// Says that an attempt to connect begins. A host name that would make the line
/// longer than `room` characters is cut; the port behind it is not.
[[nodiscard]] QString attemptLine(const QString& hostName, int port, qsizetype room);
[[nodiscard]] QString connectedLine();
[[nodiscard]] QString disconnectedLine();
/// Nothing for the server's own end of the connection, which has its own line.
[[nodiscard]] std::optional<QString> errorLine(QAbstractSocket::SocketError error);

}  // namespace kelmora::net

#include "net/StatusLines.h"

#include <algorithm>
#include <array>

namespace kelmora::net {

namespace {

struct ErrorText {
  QAbstractSocket::SocketError error;
  const char* text;  ///< null if the error is not told
};

/// The errors that are not told by their number.
constexpr std::array<ErrorText, 3> errorTexts{{
    {QAbstractSocket::RemoteHostClosedError, nullptr},
    {QAbstractSocket::HostNotFoundError, "Host not found"},
    {QAbstractSocket::ConnectionRefusedError, "Connection refused by the peer"},
}};

QString italic(const QString& text) {
  return QStringLiteral("<i>%1</i>").arg(text);
}

QString errorStatus(const QString& text) {
  return italic(QStringLiteral("Error: ") + text);
}

}  // namespace

QString attemptLine(const QString& hostName, int port, qsizetype room) {
  const QString before = QStringLiteral("Attempting to connect to ");
  const QString after = QStringLiteral(" on port %1...").arg(port);
  const qsizetype left = std::max(qsizetype{0}, room - italic(before + after).size());
  // The name is shown as 8-bit text that a zero ends, with "?" for each
  // character outside Latin-1.
  const QString shownName = QString::fromLatin1(hostName.left(left).toLatin1().constData());
  return italic(before + shownName + after);
}

QString connectedLine() {
  return italic(QStringLiteral("Connected to host!"));
}

QString disconnectedLine() {
  return italic(QStringLiteral("Disconnected from host!"));
}

std::optional<QString> errorLine(QAbstractSocket::SocketError error) {
  for (const ErrorText& known : errorTexts) {
    if (known.error != error)
      continue;
    if (known.text == nullptr)
      return std::nullopt;
    return errorStatus(QLatin1String(known.text));
  }
  return errorStatus(QStringLiteral("Socket error %1").arg(static_cast<int>(error)));
}

}  // namespace kelmora::net

#include "net/StatusLines.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>

namespace kelmora::net {

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(StatusLines)
};

struct ErrorText {
  QAbstractSocket::SocketError error;
  const char* text;  ///< null if the error is not told
};

/// The errors that are not told by their number.
constexpr std::array<ErrorText, 3> errorTexts{{
    {QAbstractSocket::RemoteHostClosedError, nullptr},
    {QAbstractSocket::HostNotFoundError, QT_TRANSLATE_NOOP("StatusLines", "Host not found")},
    {QAbstractSocket::ConnectionRefusedError,
     QT_TRANSLATE_NOOP("StatusLines", "Connection refused by the peer")},
}};

QString italic(const QString& text) {
  return QStringLiteral("<i>%1</i>").arg(text);
}

QString errorStatus(const QString& text) {
  return italic(Words::tr("Error: %1").arg(text));
}

}  // namespace

QString attemptLine(const QString& hostName, int port, qsizetype room) {
  const auto lineFor = [&](const QString& name) {
    return italic(
        Words::tr("Attempting to connect to %1 on port %2...").arg(name, QString::number(port)));
  };
  const qsizetype left = std::max(qsizetype{0}, room - lineFor({}).size());
  // The name is shown as 8-bit text that a zero ends, with "?" for each
  // character outside Latin-1.
  const QString shownName = QString::fromLatin1(hostName.left(left).toLatin1().constData());
  return lineFor(shownName);
}

QString connectedLine() {
  return italic(Words::tr("Connected to host!"));
}

QString disconnectedLine() {
  return italic(Words::tr("Disconnected from host!"));
}

std::optional<QString> errorLine(QAbstractSocket::SocketError error) {
  for (const ErrorText& known : errorTexts) {
    if (known.error != error)
      continue;
    if (known.text == nullptr)
      return std::nullopt;
    return errorStatus(Words::tr(known.text));
  }
  return errorStatus(Words::tr("Socket error %1").arg(static_cast<int>(error)));
}

}  // namespace kelmora::net

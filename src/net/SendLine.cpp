#include "net/SendLine.h"

#include <QAbstractSocket>
#include <QTextStream>
#include <utility>

namespace kelmora::net {

namespace {

// After a failed attempt the socket is still an open device that takes nothing;
// a stream that tried would keep every further line in memory.
SendResult resultOfWriting(const QIODevice* device) {
  using enum SendResult;
  if (device == nullptr || !device->isWritable())
    return NothingTakesIt;
  const auto* const socket = qobject_cast<const QAbstractSocket*>(device);
  if (socket == nullptr)
    return Sent;
  if (socket->state() == QAbstractSocket::UnconnectedState)
    return NothingTakesIt;
  return socket->bytesToWrite() < largestBacklog ? Sent : BacklogIsFull;
}

}  // namespace

SendResult sendLine(QTextStream& stream, const QString& line) {
  const SendResult result = resultOfWriting(stream.device());
  if (result == SendResult::Sent) {
    stream << line << QLatin1String("\r\n");
    stream.flush();
  }
  return result;
}

bool LostLines::areNews(SendResult result) {
  if (result == SendResult::NothingTakesIt)
    return false;
  const bool before = std::exchange(losing_, result == SendResult::BacklogIsFull);
  return losing_ && !before;
}

}  // namespace kelmora::net

#pragma once

#include <QtGlobal>

class QString;
class QTextStream;

namespace kelmora::net {

/// What may wait in a socket whose server takes nothing, in bytes. Few scripts
/// send as much at one go; but a server that lets triggers answer it and never
/// listens could make the client hold any amount.
inline constexpr qint64 largestBacklog = qint64{64} * 1024 * 1024;

/// What became of a line.
enum class SendResult {
  Sent,
  NothingTakesIt,  ///< above all for want of a connection; lost without a word
  BacklogIsFull,   ///< lost to a server that takes none
};

/// Writes the line and "\r\n" in the stream's encoding (UTF-8 unless changed)
/// and flushes. The line carries no terminator of its own.
SendResult sendLine(QTextStream& stream, const QString& line);

/// Knows when the player has to hear that lines are lost: with the first one,
/// and then not before the server, or another one, has taken a line again.
class LostLines {
 public:
  /// To be told of every line in turn.
  [[nodiscard]] bool areNews(SendResult result);

 private:
  bool losing_ = false;
};

}  // namespace kelmora::net

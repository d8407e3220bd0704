#pragma once

#include <QtGlobal>

class QString;
class QTextStream;

namespace net {

/// What may wait in a socket whose server takes nothing, in bytes. No script
/// sends as much at one go; but a server that lets triggers answer it and never
/// listens could make the client hold any amount.
inline constexpr qint64 largestBacklog = qint64{64} * 1024 * 1024;

/// Writes the line and "\r\n" in the stream's encoding (UTF-8 unless changed)
/// and flushes. The line carries no terminator of its own. Where nothing can be
/// written, without a connection above all or behind a full backlog, the line is lost
/// without a word.
void sendLine(QTextStream& stream, const QString& line);

}  // namespace net

#pragma once

class QString;
class QTextStream;

namespace net {

/// Writes the line and "\r\n" in the stream's encoding (UTF-8 unless changed)
/// and flushes. The line carries no terminator of its own. Where nothing can be
/// written, without a connection above all, the line is lost without a word.
void sendLine(QTextStream& stream, const QString& line);

}  // namespace net

#include "terminal/core/OutputPipeline.h"

#include <cstring>

#include "terminal/core/ByteWalk.h"

namespace {

/// Gathers the plain lines; the pane's HTML is made when its turn comes. Most
/// bytes of a line stay as they are, so this walk is in long runs.
struct LineSink {
  static constexpr auto kinds = bytewalk::makeByteKinds([](const ByteRow& row) {
    const bool staysAsItIs = row.plain.size() == 1 && row.plain[0] == row.byte;
    return !staysAsItIs || row.byte == '<' || row.byte == '>';
  });

  explicit LineSink(qsizetype bytes) : lines(bytes + 64) {}

  void addRun(QByteArrayView run) { lines += run; }
  void addByte(const ByteRow& row, ByteRow::Mode mode) {
    lines += row.plain;
    bell = bell || row.byte == '\a';
    tags = tags || (mode != ByteRow::Mode::NoHtml && (row.byte == '<' || row.byte == '>'));
  }

  ByteBuffer lines;
  bool bell = false;
  bool tags = false;
  NoHtml html;
};

}  // namespace

void OutputPipeline::readSocketData(const QByteArray& data, const PipelineOptions& options,
                                    PipelineHost& host) {
  ServerText text{.bytes = data, .state = state_, .options = options};
  LineSink sink(data.size());
  walkBytes(data, options, state_, sink);
  const QByteArray lines = std::move(sink.lines).take();
  text.plain = lines;
  if (sink.tags || (options.parseHtml && text.state.insideTag))
    text.tags = ServerText::Tags::FromServer;

  // From here on nothing of the pipeline is in use: the host may come back.
  if (sink.bell && options.playBeeps)
    host.beep();
  host.showServerText(std::move(text));
  // One array for all pieces, unless the host keeps one.
  QByteArray piece;
  for (qsizetype start = 0, end = 0; end >= 0; start = end + 1) {
    end = lines.indexOf('\n', start);
    piece.resize((end < 0 ? lines.size() : end) - start);
    std::memcpy(piece.data(), lines.constData() + start, static_cast<std::size_t>(piece.size()));
    host.parseVitals(piece.constData());
    host.checkTriggers(piece);
  }
}

#include "terminal/core/OutputPipeline.h"

#include <algorithm>
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

  LineSink(const QByteArray& data, const PipelineState& state)
      : lines(data.size() + 64), data_(data), state_(state) {
    html += state.translator.currentSpan();
  }

  void addRun(QByteArrayView run) {
    lines += run;
    // A run changes nothing of the state, so it may be divided anywhere.
    while (run.end() - data_.begin() > nextDivision_ && divides(run)) {
    }
  }
  void addByte(const ByteRow& row, ByteRow::Mode mode) {
    lines += row.plain;
    bell = bell || row.byte == '\a';
    tags = tags || (mode != ByteRow::Mode::NoHtml && (row.byte == '<' || row.byte == '>'));
  }

  ByteBuffer lines;
  bool bell = false;
  bool tags = false;
  OpenSpans html;
  std::vector<ServerText::Division> divisions;

 private:
  /// Answers false where no further line ends in the run that is long enough.
  bool divides(QByteArrayView run) {
    const qsizetype start = run.begin() - data_.begin();
    const qsizetype lineEnd = run.indexOf('\n', std::max<qsizetype>(nextDivision_ - start, 0));
    if (lineEnd < 0)
      return false;
    const qsizetype behind = lineEnd + 1;
    divisions.push_back({.bytes = start + behind,
                         .plain = lines.view().size() - (run.size() - behind),
                         .state = state_,
                         .spans = html.html()});
    nextDivision_ = start + behind + ServerText::partLength;
    return true;
  }

  QByteArrayView data_;
  const PipelineState& state_;
  qsizetype nextDivision_ = ServerText::partLength;
};

}  // namespace

void OutputPipeline::readSocketData(const QByteArray& data, const PipelineOptions& options,
                                    PipelineHost& host) {
  ServerText text{.bytes = data, .state = state_, .options = options};
  LineSink sink(data, state_);
  walkBytes(data, options, state_, sink);
  const QByteArray lines = std::move(sink.lines).take();
  text.plain = lines;
  if (sink.tags || (options.parseHtml && text.state.insideTag))
    text.tags = ServerText::Tags::FromServer;
  else if (text.state.translator.hasPlainColours())
    text.divisions = std::move(sink.divisions);

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

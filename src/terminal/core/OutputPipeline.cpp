#include "terminal/core/OutputPipeline.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "terminal/core/HtmlSink.h"
#include "terminal/core/TextSink.h"

namespace kelmora::terminal {

namespace {

/// A part of a long read has about so many characters: keys come between the
/// turns of two.
constexpr qsizetype partLength = qsizetype{8} * 1024;

/// What one walk makes of a read.
struct Read {
  ServerText text;
  QByteArray lines;
  bool bell;
};

Read readHtml(const QByteArray& data, const PipelineOptions& options, PipelineState& state) {
  HtmlSink sink(data.size(), options.parseHtml ? HtmlSink::Tags::Parsed : HtmlSink::Tags::Shown);
  walkBytes(data, options, state, sink);
  QByteArray lines = std::move(sink.lines).take();
  const QString html = std::move(sink).html(options.displayURLs);
  std::vector<SafeHtml> pieces =
      data.size() > partLength ? safeMarkupPieces(html, partLength) : std::vector{safeMarkup(html)};
  return {std::move(pieces), std::move(lines), sink.bell};
}

/// Nothing where only HTML can say what is shown.
std::optional<Read> readText(const QByteArray& data, const PipelineOptions& options,
                             PipelineState& state) {
  TextSink sink(data.size(), options);
  walkBytes(data, options, state, sink);
  auto text = std::move(sink).text();
  if (!text)
    return std::nullopt;
  return Read{*std::move(text), std::move(sink.lines).take(), sink.bell};
}

Read readOf(const QByteArray& data, const PipelineOptions& options, PipelineState& state) {
  const bool hasTags = options.parseHtml && (state.insideTag || data.contains('<'));
  // Before the colours are known, nothing stands in front of a read's text.
  if (!hasTags && !state.translator.currentSpan().isEmpty()) {
    PipelineState walked = state;
    if (auto read = readText(data, options, walked)) {
      state = std::move(walked);
      return *std::move(read);
    }
  }
  return readHtml(data, options, state);
}

}  // namespace

void OutputPipeline::readSocketData(const QByteArray& data, const PipelineOptions& options,
                                    PipelineHost& host) {
  Read read = readOf(data, options, state_);
  // From here on nothing of the pipeline is in use: the host may come back.
  if (read.bell && options.playBeeps)
    host.beep();
  host.showServerText(std::move(read.text));
  // One array for all pieces, unless the host keeps one.
  QByteArray piece;
  QByteArrayView rest = read.lines;
  while (true) {
    const void* const end =
        rest.isEmpty() ? nullptr
                       : std::memchr(rest.data(), '\n', static_cast<std::size_t>(rest.size()));
    const qsizetype length = end ? static_cast<const char*>(end) - rest.data() : rest.size();
    piece.resize(length);
    std::copy_n(rest.data(), length, piece.data());
    host.parseVitals(piece.constData());
    host.checkTriggers(piece);
    if (!end)
      return;
    rest = rest.sliced(length + 1);
  }
}

}  // namespace kelmora::terminal

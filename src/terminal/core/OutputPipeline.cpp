#include "terminal/core/OutputPipeline.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "terminal/core/HtmlSink.h"
#include "terminal/core/TextSink.h"

namespace kelmora::terminal {

namespace {

/// A long read with tags is divided into pieces of about so many characters, so that
/// keys can be handled while it is shown.
constexpr qsizetype partLength = qsizetype{8} * 1024;

/// What a read becomes.
struct Read {
  ServerText text;
  QByteArray lines;
  bool bell;
};

Read readHtml(const QByteArray& data, const PipelineOptions& options, PipelineState& state) {
  HtmlSink sink(data.size(), options.parseHtml ? HtmlSink::Tags::Parsed : HtmlSink::Tags::Shown);
  walkBytes(data, options, state, sink);
  const bool bell = sink.bell;
  QByteArray lines = std::move(sink.lines).take();
  const QString html = std::move(sink).html(options.displayURLs);
  std::vector<SafeHtml> pieces =
      data.size() > partLength ? safeMarkupPieces(html, partLength) : std::vector{safeMarkup(html)};
  return {std::move(pieces), std::move(lines), bell};
}

/// Returns nothing if only the toolkit's importer can find out what is shown.
std::optional<Read> readText(const QByteArray& data, const PipelineOptions& options,
                             PipelineState& state) {
  TextSink sink(data.size(), options);
  walkBytes(data, options, state, sink);
  const bool bell = sink.bell;
  QByteArray lines = std::move(sink.lines).take();
  auto text = std::move(sink).text();
  if (!text)
    return std::nullopt;
  return Read{*std::move(text), std::move(lines), bell};
}

Read readOf(const QByteArray& data, const PipelineOptions& options, PipelineState& state) {
  const bool hasTags = options.parseHtml && (state.insideTag || data.contains('<'));
  // A read without tags is tried as text first. Before the colours are known no span
  // is written before it, and the importer would treat its beginning otherwise.
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
  // The host may call the pipeline again: its state must not be used from here on.
  if (read.bell && options.playBeeps)
    host.beep();
  host.showServerText(std::move(read.text));
  // The same array is used for all pieces; it is copied if the host has kept one.
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

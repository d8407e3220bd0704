#include "terminal/core/ServerText.h"

#include "terminal/core/ByteWalk.h"
#include "terminal/core/Links.h"

namespace {

/// Gathers UTF-8 with the placeholders of blanks and angle brackets.
struct HtmlSink {
  static constexpr auto kinds = bytewalk::makeByteKinds([](const ByteRow&) { return true; });

  // In most text every blank and colour grows on its way to HTML.
  explicit HtmlSink(qsizetype bytes) : html(4 * bytes + 1024) {}

  void addRun(QByteArrayView run) { html += run; }
  void addByte(const ByteRow& row, ByteRow::Mode mode) {
    html += row.html[static_cast<std::size_t>(mode)];
  }

  ByteBuffer html;
};

}  // namespace

QString ServerText::decoded() const {
  HtmlSink sink(bytes.size());
  // A read reopens its colour. What follows a division begins with the end of
  // the line break before it, which shows nothing.
  if (openSpans)
    (sink.html += *openSpans) += "\n";
  else
    sink.html += state.translator.currentSpan();
  PipelineState walked = state;
  walkBytes(bytes, options, walked, sink);
  QString text = QString::fromUtf8(sink.html.view());
  if (options.displayURLs)
    linkify(text);
  resolvePlaceholders(text);
  return text;
}

std::vector<ServerText> ServerText::divided() const {
  std::vector<ServerText> parts;
  parts.reserve(divisions.size() + 1);
  Division start{.bytes = 0, .plain = 0, .state = state, .spans = {}};
  const auto addUpTo = [&](qsizetype endOfBytes, qsizetype endOfPlain) {
    parts.push_back({.bytes = bytes.sliced(start.bytes, endOfBytes - start.bytes),
                     .state = start.state,
                     .options = options,
                     .plain = plain.sliced(start.plain, endOfPlain - start.plain),
                     .tags = tags});
    if (parts.size() > 1)
      parts.back().openSpans = start.spans;
    else
      parts.back().openSpans = openSpans;
  };
  for (const Division& division : divisions) {
    addUpTo(division.bytes, division.plain);
    start = division;
  }
  if (parts.empty() || start.bytes < bytes.size())
    addUpTo(bytes.size(), plain.size());
  return parts;
}

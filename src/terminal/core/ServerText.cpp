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
  sink.html += state.translator.currentSpan();
  PipelineState walked = state;
  walkBytes(bytes, options, walked, sink);
  QString text = QString::fromUtf8(sink.html.view());
  if (options.displayURLs)
    linkify(text);
  resolvePlaceholders(text);
  return text;
}

#pragma once

#include <QByteArrayView>

#include "terminal/core/PipelineState.h"
#include "terminal/core/TextBuffer.h"

namespace kelmora::terminal {

namespace bytewalk {

inline constexpr char telnetCommand = '\xFF';
inline constexpr qsizetype telnetCommandLength = 3;
inline constexpr char escape = '\x1B';

/// Quirk: in the plain copy, too, a TAB becomes HTML.
inline constexpr QByteArrayView hardTab = "&nbsp;&nbsp;&nbsp;&nbsp;";

}  // namespace bytewalk

/// What walkBytes() fills in for every kind of sink: the plain copy of the text, and
/// whether there was a bell in it.
class ReadSink : public SpanSink {
 public:
  explicit ReadSink(qsizetype bytes) : lines(bytes + 64) {}

  ByteBuffer lines;
  bool bell = false;

 protected:
  ~ReadSink() = default;
};

/// Walks over the bytes of one read, and updates the state for the next one. Escape
/// sequences go to the translator, and some bytes are dropped. The rest goes to the
/// sink: a line end to endLine(); anything else to takeRun(), which returns how many
/// bytes it has taken. If it has taken none, the next byte goes to addByte().
template <typename Sink>
void walkBytes(QByteArrayView data, const PipelineOptions& options, PipelineState& state,
               Sink& sink) {
  const auto colours =
      options.displayAnsiColor ? AnsiTranslator::Colours::Shown : AnsiTranslator::Colours::Stripped;
  qsizetype index = 0;
  const auto translate = [&] {
    state.translator.translateEscape(index, data, sink, colours);
    ++index;
  };
  state.translator.reopen(sink);
  if (state.translator.escapePending() && !data.isEmpty()) {
    --index;
    translate();
  }
  while (index < data.size()) {
    const char byte = data[index];
    if (byte == bytewalk::escape) {
      translate();
    } else if (byte == '\n') {
      sink.endLine();
      ++index;
    } else if (byte == '\r' || byte == '\a') {
      sink.bell = sink.bell || byte == '\a';
      ++index;
    } else if (byte == bytewalk::telnetCommand) {
      index += bytewalk::telnetCommandLength;
    } else if (const qsizetype run = sink.takeRun(data.sliced(index)); run > 0) {
      index += run;
    } else {
      sink.addByte(byte, options.parseHtml && state.insideTag);
      if (options.parseHtml && (byte == '<' || byte == '>'))
        state.insideTag = byte == '<';
      ++index;
    }
  }
}

}  // namespace kelmora::terminal

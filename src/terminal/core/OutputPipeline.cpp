#include "terminal/core/OutputPipeline.h"

#include <algorithm>

namespace {

enum class Mode { NoHtml, OutsideTag, InsideTag };

/// What a byte becomes that is not shown as it is.
struct ByteRow {
  char byte;
  std::array<QByteArrayView, 3> html;  // by Mode
  QByteArrayView plain;
};

constexpr QByteArrayView hardTab = "&nbsp;&nbsp;&nbsp;&nbsp;";

/// Angle brackets of plain text and the blanks of a TAB stay placeholders until
/// the links are made. Quirk: the plain copy of a TAB is the HTML text.
constexpr std::array<ByteRow, 7> byteRows{{
    {'\a', {"", "", ""}, ""},
    {'\t', {"<tab>", "<tab>", hardTab}, hardTab},
    {'\n', {"<br>\n", "<br>\n", "<br>\n"}, "\n"},
    {'\r', {"", "", ""}, ""},
    {' ', {"&#32;", "&#32;", " "}, " "},
    {'<', {"<lt>", "<", "<"}, "<"},
    {'>', {"<gt>", ">", ">"}, ">"},
}};

constexpr char telnetCommand = '\xFF';
constexpr qsizetype telnetCommandLength = 3;
constexpr char escape = '\x1B';

/// What a byte is to the walk: an index into the rows, or one of these.
enum : quint8 { rowCount = byteRows.size(), ordinaryByte, otherByte };

constexpr std::array<quint8, 256> makeByteKinds() {
  std::array<quint8, 256> kinds{};
  kinds.fill(ordinaryByte);
  for (std::size_t row = 0; row < byteRows.size(); ++row)
    kinds[static_cast<unsigned char>(byteRows[row].byte)] = static_cast<quint8>(row);
  for (const char byte : {telnetCommand, escape})
    kinds[static_cast<unsigned char>(byte)] = otherByte;
  return kinds;
}

constexpr std::array<quint8, 256> byteKinds = makeByteKinds();

quint8 kindOf(char byte) {
  return byteKinds[static_cast<unsigned char>(byte)];
}

bool isOrdinary(char byte) {
  return kindOf(byte) == ordinaryByte;
}

}  // namespace

struct OutputPipeline::Read {
  ByteBuffer html;
  ByteBuffer pendingLineText;
  bool beep = false;
  ServerText::Tags tags = ServerText::Tags::OwnOnly;
};

void OutputPipeline::readSocketData(QByteArrayView data, const PipelineOptions& options,
                                    PipelineHost& host) {
  // In most text every blank and colour grows on its way to HTML.
  Read read{.html = ByteBuffer(4 * data.size() + 1024),
            .pendingLineText = ByteBuffer(data.size() + 64)};
  read.html += translator_.currentSpan();
  if (options.parseHtml && insideTag_)
    read.tags = ServerText::Tags::FromServer;
  walk(data, options, read);

  // From here on nothing of the pipeline is in use: the host may come back.
  if (read.beep)
    host.beep();
  const QByteArray lines = std::move(read.pendingLineText).take();
  host.showServerText(
      {.html = std::move(read.html).take(),
       .plain = lines,
       .links = options.displayURLs ? ServerText::Links::Shown : ServerText::Links::Hidden,
       .tags = read.tags});
  qsizetype end = 0;
  for (qsizetype start = 0; end >= 0; start = end + 1) {
    end = lines.indexOf('\n', start);
    const QByteArray piece = lines.mid(start, end < 0 ? -1 : end - start);
    host.parseVitals(piece.constData());
    host.checkTriggers(piece);
  }
}

void OutputPipeline::walk(QByteArrayView data, const PipelineOptions& options, Read& read) {
  const auto colours =
      options.displayAnsiColor ? AnsiTranslator::Colours::Shown : AnsiTranslator::Colours::Stripped;
  for (qsizetype index = 0; index < data.size();) {
    const char byte = data[index];
    if (translator_.escapePending()) {
      translator_.translateEscape(--index, data, read.html, colours);
      ++index;
    } else if (isOrdinary(byte)) {
      const auto* begin = data.begin() + index;
      const QByteArrayView run(begin, std::find_if_not(begin, data.end(), isOrdinary));
      read.html += run;
      read.pendingLineText += run;
      index += run.size();
    } else if (byte == escape) {
      translator_.translateEscape(index, data, read.html, colours);
      ++index;
    } else if (byte == telnetCommand) {
      index += telnetCommandLength;
    } else {
      translateByte(byte, options, read);
      ++index;
    }
  }
}

void OutputPipeline::translateByte(char byte, const PipelineOptions& options, Read& read) {
  const ByteRow& row = byteRows[kindOf(byte)];
  const auto mode = !options.parseHtml ? Mode::NoHtml
                    : insideTag_       ? Mode::InsideTag
                                       : Mode::OutsideTag;
  read.html += row.html[static_cast<std::size_t>(mode)];
  read.pendingLineText += row.plain;
  if (options.parseHtml && (byte == '<' || byte == '>')) {
    insideTag_ = byte == '<';
    read.tags = ServerText::Tags::FromServer;
  }
  if (options.playBeeps && byte == '\a')
    read.beep = true;
}

#pragma once

#include <QByteArrayView>
#include <algorithm>
#include <array>

#include "terminal/core/PipelineState.h"

/// What a byte becomes that is not shown as it is.
struct ByteRow {
  enum class Mode { NoHtml, OutsideTag, InsideTag };

  char byte;
  std::array<QByteArrayView, 3> html;  // by Mode
  QByteArrayView plain;
};

namespace bytewalk {

inline constexpr QByteArrayView hardTab = "&nbsp;&nbsp;&nbsp;&nbsp;";

/// Angle brackets of plain text and the blanks of a TAB stay placeholders until
/// the links are made. Quirk: the plain copy of a TAB is the HTML text.
inline constexpr std::array<ByteRow, 7> byteRows{{
    {'\a', {"", "", ""}, ""},
    {'\t', {"<tab>", "<tab>", hardTab}, hardTab},
    {'\n', {"<br>\n", "<br>\n", "<br>\n"}, "\n"},
    {'\r', {"", "", ""}, ""},
    {' ', {"&#32;", "&#32;", " "}, " "},
    {'<', {"<lt>", "<", "<"}, "<"},
    {'>', {"<gt>", ">", ">"}, ">"},
}};

inline constexpr char telnetCommand = '\xFF';
inline constexpr qsizetype telnetCommandLength = 3;
inline constexpr char escape = '\x1B';

/// What a byte is to a walk: an index into the rows, or one of these.
enum : quint8 { rowCount = byteRows.size(), ordinaryByte, otherByte };
using ByteKinds = std::array<quint8, 256>;

/// A row is of no use to a walk where it leaves the byte as it is.
template <typename IsOfUse>
constexpr ByteKinds makeByteKinds(IsOfUse isOfUse) {
  ByteKinds kinds{};
  kinds.fill(ordinaryByte);
  for (std::size_t row = 0; row < byteRows.size(); ++row)
    if (isOfUse(byteRows[row]))
      kinds[static_cast<unsigned char>(byteRows[row].byte)] = static_cast<quint8>(row);
  for (const char byte : {telnetCommand, escape})
    kinds[static_cast<unsigned char>(byte)] = otherByte;
  return kinds;
}

}  // namespace bytewalk

/// Walks over the bytes of one read and leaves the state as the next read finds
/// it. What the bytes become goes to the sink: addRun() takes those that its
/// `kinds` call ordinary, addByte() each of the others with its row, and the
/// spans are appended to its `html`.
template <typename Sink>
void walkBytes(QByteArrayView data, const PipelineOptions& options, PipelineState& state,
               Sink& sink) {
  const auto kindOf = [](char byte) { return Sink::kinds[static_cast<unsigned char>(byte)]; };
  const auto isOrdinary = [&](char byte) { return kindOf(byte) == bytewalk::ordinaryByte; };
  const auto colours =
      options.displayAnsiColor ? AnsiTranslator::Colours::Shown : AnsiTranslator::Colours::Stripped;
  for (qsizetype index = 0; index < data.size();) {
    const char byte = data[index];
    if (state.translator.escapePending()) {
      state.translator.translateEscape(--index, data, sink.html, colours);
      ++index;
    } else if (isOrdinary(byte)) {
      const char* const begin = data.data() + index;
      const QByteArrayView run(begin,
                               std::find_if_not(begin, data.data() + data.size(), isOrdinary));
      sink.addRun(run);
      index += run.size();
    } else if (byte == bytewalk::escape) {
      state.translator.translateEscape(index, data, sink.html, colours);
      ++index;
    } else if (byte == bytewalk::telnetCommand) {
      index += bytewalk::telnetCommandLength;
    } else {
      sink.addByte(bytewalk::byteRows[kindOf(byte)], !options.parseHtml ? ByteRow::Mode::NoHtml
                                                     : state.insideTag  ? ByteRow::Mode::InsideTag
                                                                       : ByteRow::Mode::OutsideTag);
      if (options.parseHtml && (byte == '<' || byte == '>'))
        state.insideTag = byte == '<';
      ++index;
    }
  }
}

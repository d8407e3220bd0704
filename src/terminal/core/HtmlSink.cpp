#include "terminal/core/HtmlSink.h"

#include <algorithm>
#include <array>

#include "terminal/core/Links.h"

namespace kelmora::terminal {

namespace {

/// A byte that is not written as itself, and what is written for it.
struct ByteRow {
  char byte;
  QByteArrayView shown;  ///< where tags are not parsed
  QByteArrayView outsideTag;
  QByteArrayView insideTag;
  QByteArrayView plain;  ///< in the plain copy
};

constexpr std::array<ByteRow, 4> byteRows{{
    {'\t', "<tab>", "<tab>", bytewalk::hardTab, bytewalk::hardTab},
    {' ', "&#32;", "&#32;", " ", " "},
    {'<', "<lt>", "<", "<", "<"},
    {'>', "<gt>", ">", ">", ">"},
}};

constexpr std::array<bool, 256> makeOrdinary() {
  std::array<bool, 256> ordinary{};
  ordinary.fill(true);
  for (const ByteRow& row : byteRows)
    ordinary[static_cast<unsigned char>(row.byte)] = false;
  for (const char byte : {'\a', '\n', '\r', bytewalk::escape, bytewalk::telnetCommand})
    ordinary[static_cast<unsigned char>(byte)] = false;
  return ordinary;
}

}  // namespace

// HTML is longer than the bytes of a read: each blank and colour takes more.
HtmlSink::HtmlSink(qsizetype bytes, Tags tags)
    : ReadSink(bytes), tags_(tags), html_(4 * bytes + 1024) {}

qsizetype HtmlSink::takeRun(QByteArrayView rest) {
  static constexpr auto ordinary = makeOrdinary();
  const auto end = std::find_if_not(rest.begin(), rest.end(), [](char byte) {
    return ordinary[static_cast<unsigned char>(byte)];
  });
  const QByteArrayView run = rest.first(end - rest.begin());
  html_ += run;
  lines += run;
  return run.size();
}

void HtmlSink::addByte(char byte, bool insideTag) {
  const auto* row = std::find_if(byteRows.begin(), byteRows.end(),
                                 [byte](const ByteRow& one) { return one.byte == byte; });
  html_ += tags_ == Tags::Shown ? row->shown : insideTag ? row->insideTag : row->outsideTag;
  lines += row->plain;
}

void HtmlSink::endLine() {
  html_ += QByteArrayView("<br>\n");
  lines += '\n';
}

QString HtmlSink::html(bool withLinks) && {
  QString text = QString::fromUtf8(std::move(html_).take());
  if (withLinks)
    linkify(text);
  resolvePlaceholders(text);
  return text;
}

}  // namespace kelmora::terminal

#include "terminal/session/DocumentRuns.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <algorithm>

namespace kelmora::terminal {

namespace {

bool isPlain(const QTextBlock& block) {
  const QTextBlockFormat format = block.blockFormat();
  return format.objectIndex() < 0 && block.textDirection() != Qt::RightToLeft &&
         !format.hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth);
}

/// Whether it is a format of mere characters. They may be a link.
bool isPlain(const QTextFormat& format) {
  return format.isCharFormat() && format.objectType() == QTextFormat::NoObject &&
         !format.hasProperty(QTextFormat::AnchorName);
}

}  // namespace

std::optional<DocumentRuns> DocumentRuns::of(const QTextDocument& document) {
  if (!document.rootFrame()->childFrames().isEmpty())
    return std::nullopt;
  DocumentRuns read;
  read.paragraphs.reserve(static_cast<std::size_t>(document.blockCount()));
  std::vector<bool> used(static_cast<std::size_t>(document.allFormats().size()));
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (!isPlain(block))
      return std::nullopt;
    const std::size_t before = read.runs.size();
    for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
      const QTextFragment fragment = piece.fragment();
      read.runs.push_back({fragment.length(), fragment.charFormatIndex()});
      used[static_cast<std::size_t>(fragment.charFormatIndex())] = true;
    }
    read.paragraphs.push_back({.text = block.text(),
                               .blockFormat = block.blockFormatIndex(),
                               .charFormat = block.charFormatIndex(),
                               .runs = static_cast<int>(read.runs.size() - before)});
  }
  const QList<QTextFormat> formats = document.allFormats();
  for (std::size_t index = 0; index < used.size(); ++index)
    if (used[index] && !isPlain(formats.at(static_cast<qsizetype>(index))))
      return std::nullopt;
  return read;
}

}  // namespace kelmora::terminal

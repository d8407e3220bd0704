#include "automation/core/BlockFile.h"

#include <limits>
#include <optional>
#include <utility>

#include "automation/core/TextLines.h"
#include "scan/Format.h"

namespace kelmora::automation {

namespace {

scan::Format headerOf(const BlockFormat& format) {
  const bool quoted = format.label == BlockFormat::Label::Quoted;
  // The line itself bounds the label; cutting it would damage a table that
  // was only loaded and saved again.
  constexpr qsizetype noLimit = std::numeric_limits<qsizetype>::max();
  return scan::Format::compile(format.keyword.toByteArray() + (quoted ? " \"%[^\"]\"" : " %s"),
                               noLimit)
      .value();
}

QString decoded(QByteArrayView line, BlockFormat::Body body) {
  // A quirk kept on purpose: what is written as Latin-1 is read as UTF-8 in
  // some files, so that only ASCII comes back.
  return body == BlockFormat::Body::Utf8 ? QString::fromUtf8(line) : QString::fromLatin1(line);
}

/// A header is one line of the file. Other breaks than these end none there, and
/// a table that was only loaded and saved must not change.
QByteArray onOneLine(QString label) {
  return label
      .removeIf([](QChar character) {
        return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
               character == QChar::ParagraphSeparator;
      })
      .toLatin1();
}

}  // namespace

namespace blockfile {

Reading read(QByteArrayView text, const BlockFormat& format,
             const std::function<void(Block&&)>& take) {
  const scan::Format header = headerOf(format);
  const QByteArray endWord = '/' + format.keyword.toByteArray();
  TextLines lines(text);
  std::optional<Block> block;
  while (const std::optional<QByteArrayView> line = lines.next()) {
    if (block && *line == endWord) {
      take(std::move(*block));
      block.reset();
    } else if (block) {
      block->commands.append(decoded(*line, format.body));
    } else if (const scan::Result found = header.scan(*line); found.complete()) {
      block.emplace(Block{.label = QString::fromLatin1(found.text(0))});
    } else if (!line->isEmpty()) {
      return Reading::Stopped;
    }
  }
  return block ? Reading::OpenBlock : Reading::Whole;
}

void append(QByteArray& text, const BlockFormat& format, const QString& label,
            const QStringList& commands) {
  const QByteArrayView quote = format.label == BlockFormat::Label::Quoted ? "\"" : "";
  text.append('\n').append(format.keyword).append(' ');
  text.append(quote).append(onOneLine(label)).append(quote).append('\n');
  for (const QString& command : commands)
    text.append(command.toLatin1()).append('\n');
  text.append('/').append(format.keyword).append('\n');
}

}  // namespace blockfile

}  // namespace kelmora::automation

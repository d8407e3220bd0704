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
  // A label is no longer than its line. It is not cut any shorter, since loading
  // and saving a table must not change it.
  constexpr qsizetype noLimit = std::numeric_limits<qsizetype>::max();
  return scan::Format::compile(format.keyword.toByteArray() + (quoted ? " \"%[^\"]\"" : " %s"),
                               noLimit)
      .value();
}

QString decoded(QByteArrayView line, BlockFormat::Encoding encoding) {
  // A quirk kept on purpose: commands are written as Latin-1 everywhere, but the
  // commands of triggers are read as UTF-8, so that only ASCII comes back from
  // their file.
  return encoding == BlockFormat::Encoding::Utf8 ? QString::fromUtf8(line)
                                                 : QString::fromLatin1(line);
}

/// Drops the line breaks that would end the header line early. Other kinds of line
/// break end no line of a file and stay, since loading and saving a table must not
/// change it.
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
  qsizetype headerLine = 0;
  while (const std::optional<QByteArrayView> line = lines.next()) {
    if (block && *line == endWord) {
      take(std::move(*block));
      block.reset();
    } else if (block) {
      block->commands.append(decoded(*line, format.commands));
    } else if (const scan::Result found = header.scan(*line); found.complete()) {
      block.emplace(Block{.label = QString::fromLatin1(found.text(0))});
      headerLine = lines.number();
    } else if (!line->isEmpty()) {
      return {Reading::End::BadLine, lines.number()};
    }
  }
  if (block)
    return {Reading::End::OpenBlock, headerLine};
  return {};
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

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <functional>

#include "automation/core/Reading.h"

namespace kelmora::automation {

/// One block of a file, which becomes one entry of a table.
struct Block {
  QString label = {};  ///< what the header line names: a key, a pattern or an alias
  QStringList commands = {};
};

/// How the blocks of one kind of file are spelled. A block is an empty line, a
/// header line of the keyword and the label, a line for each command, and an end
/// line of "/" and the keyword.
struct BlockFormat {
  enum class Label { Word, Quoted };
  enum class Encoding { Latin1, Utf8 };

  QByteArrayView keyword;
  Label label;
  /// How commands are read. Labels are always read as Latin-1, and both are
  /// written as Latin-1 in every file.
  Encoding commands;
};

namespace blockfile {

inline constexpr BlockFormat macros{"macro", BlockFormat::Label::Word,
                                    BlockFormat::Encoding::Latin1};
inline constexpr BlockFormat triggers{"trigger", BlockFormat::Label::Quoted,
                                      BlockFormat::Encoding::Utf8};
inline constexpr BlockFormat aliases{"alias", BlockFormat::Label::Quoted,
                                     BlockFormat::Encoding::Latin1};

/// Hands over the blocks that have an end line, in their order. The first line
/// between blocks that is neither empty nor a header line is a bad one: the
/// reading stops there and leaves the rest of the text alone.
[[nodiscard]] Reading read(QByteArrayView text, const BlockFormat& format,
                           const std::function<void(Block&&)>& take);

/// Adds one block at the end of the text. Characters outside Latin-1 become "?",
/// and line breaks in the label are dropped. Otherwise label and commands are
/// written as they are, even where they will not be read back the same.
void append(QByteArray& text, const BlockFormat& format, const QString& label,
            const QStringList& commands);

}  // namespace blockfile

}  // namespace kelmora::automation

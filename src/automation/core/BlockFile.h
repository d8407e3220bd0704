#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <functional>

namespace kelmora::automation {

/// One block of a file: what its header names, then its body line by line.
struct Block {
  QString label = {};
  QStringList commands = {};
};

/// How one kind of block file is spelled. A block is an empty line, a header
/// of the keyword and the label, the commands, and "/" with the keyword.
struct BlockFormat {
  enum class Label { Word, Quoted };
  enum class Body { Latin1, Utf8 };

  QByteArrayView keyword;
  Label label;
  /// How a command read from the file is decoded; all text is written as
  /// Latin-1, and labels are read so.
  Body body;
};

namespace blockfile {

inline constexpr BlockFormat macros{"macro", BlockFormat::Label::Word, BlockFormat::Body::Latin1};
inline constexpr BlockFormat triggers{"trigger", BlockFormat::Label::Quoted,
                                      BlockFormat::Body::Utf8};
inline constexpr BlockFormat aliases{"alias", BlockFormat::Label::Quoted,
                                     BlockFormat::Body::Latin1};

/// What came of reading a text.
enum class Reading {
  Whole,
  OpenBlock,  ///< the last block has no end and was dropped
  Stopped,    ///< at a line that makes no sense
};

/// Hands over each block whose end was met, in order. Stops at the first line
/// outside a block that is neither empty nor a header: what comes after it is
/// not looked at.
[[nodiscard]] Reading read(QByteArrayView text, const BlockFormat& format,
                           const std::function<void(Block&&)>& take);

/// Writes one block at the end of the text; a character outside Latin-1
/// becomes "?", and line breaks in the label are dropped. Apart from that label
/// and commands are written as they are, whether or not they can be read back.
void append(QByteArray& text, const BlockFormat& format, const QString& label,
            const QStringList& commands);

}  // namespace blockfile

}  // namespace kelmora::automation

#pragma once

#include <QCoreApplication>

#include "FuzzTarget.h"
#include "Surroundings.h"
#include "automation/BlockShape.h"
#include "automation/core/AutomationFiles.h"
#include "support/FileText.h"
#include "support/OwnFolder.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace fuzz {

/// The entries of a table as blocks; `label` tells an entry's label.
template <typename Table, typename Label>
QList<Block> blocksOf(const Table& table, Label label) {
  QList<Block> blocks;
  for (const auto& entry : table.entries())
    blocks.append({label(entry), entry.commands});
  return blocks;
}

/// What a command becomes when it is written and read again. Nothing where it is the
/// end line of its block.
inline std::optional<QString> rewritten(const QString& command, const BlockFormat& format) {
  QByteArray line = command.toLatin1();
  // One carriage return before the line feed is read as part of the line's end.
  if (line.endsWith('\r'))
    line.chop(1);
  if (line == '/' + format.keyword.toByteArray())
    return std::nullopt;
  return format.commands == BlockFormat::Encoding::Utf8 ? QString::fromUtf8(line)
                                                        : QString::fromLatin1(line);
}

/// What blocks from a file become when they are written and read again. Nothing where a
/// command ends its block early, and where a label holds nothing but line breaks.
inline std::optional<QList<Block>> rewritten(QList<Block> blocks, const BlockFormat& format) {
  for (Block& block : blocks) {
    if (block.label.remove(u'\r').isEmpty())
      return std::nullopt;
    for (QString& command : block.commands) {
      const auto after = rewritten(command, format);
      if (!after)
        return std::nullopt;
      command = *after;
    }
  }
  return blocks;
}

/// What is different for each kind of block file.
template <typename Table>
struct BlockFileKind {
  const BlockFormat& format;
  QLatin1String path;
  /// The format of a header line for sscanf.
  const char* header;
  bool (AutomationFiles::*load)(Table&);
  bool (AutomationFiles::*write)(const Table&);
};

/// Loads a file of these bytes, writes the table, and loads the new file.
template <typename Table, typename Label>
void loadWriteAndLoad(const BlockFileKind<Table>& kind, const QByteArray& bytes, Label label) {
  Surroundings<QCoreApplication>::provide();
  require(put(kind.path, bytes), "the file can be made");
  Table table;
  AutomationFiles files;
  const bool success = (files.*kind.load)(table);
  const QList<Block> blocks = blocksOf(table, label);
  require(shape(blocks, success) == readShapeByTheLibraries(kind.format, bytes, kind.header),
          "the file is read as the libraries read it");

  require((files.*kind.write)(table), "the table can be written");
  const QString backup = kind.path + QStringLiteral(".bak");
  const bool isKept = QFile::exists(backup);
  require(isKept ? contentsOf(backup) == bytes : success,
          "a file that was not read to its end is kept");
  require(namesHere().size() == (isKept ? 2 : 1), "no other file is left behind");
  QFile::remove(backup);
  Table again;
  const bool successAgain = (files.*kind.load)(again);
  if (const auto expected = rewritten(blocks, kind.format))
    require(shape(blocksOf(again, label), successAgain) == shape(*expected, true),
            "the table comes back from its file");
}

}  // namespace fuzz

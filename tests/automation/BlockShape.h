#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <QString>
#include <QTextStream>
#include <cstdio>

#include "automation/core/BlockFile.h"

using namespace kelmora;
using namespace kelmora::automation;

/// "[label|command|command][label]", and "!" where the reading failed.
inline QString shape(const QList<Block>& blocks, bool success) {
  QString text;
  for (const Block& block : blocks)
    text += u'[' + (QStringList(block.label) + block.commands).join(u'|') + u']';
  return success ? text : text + u'!';
}

/// Reads a block file with the toolkit's text stream and the C library's sscanf. The
/// locale must be "C".
inline QString readShapeByTheLibraries(const BlockFormat& format, QByteArray text,
                                       const char* header) {
  QTextStream stream(&text, QIODevice::ReadOnly);
  stream.setEncoding(QStringConverter::Latin1);
  stream.setAutoDetectUnicode(false);
  const QByteArray endWord = '/' + format.keyword.toByteArray();
  QList<Block> blocks;
  Block block;
  bool insideBlock = false;
  QString decodedLine;
  while (stream.readLineInto(&decodedLine)) {
    const QByteArray line = decodedLine.toLatin1();
    QByteArray field(line.size() + 1, '\0');
    if (insideBlock && line == endWord) {
      blocks.append(block);
      insideBlock = false;
    } else if (insideBlock) {
      block.commands += format.commands == BlockFormat::Encoding::Utf8 ? QString::fromUtf8(line)
                                                                       : QString::fromLatin1(line);
    } else if (std::sscanf(line.constData(), header, field.data()) == 1) {
      block = {.label = QString::fromLatin1(field.constData()), .commands = {}};
      insideBlock = true;
    } else if (!line.isEmpty()) {
      return shape(blocks, false);
    }
  }
  return shape(blocks, true);
}

#pragma once

#include <QBrush>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <algorithm>
#include <vector>

/// All that a document contains, for comparison: its blocks and pieces of text, and
/// the formats of both.
struct PaneContent {
  struct Piece {
    QString text;
    QTextCharFormat format;
    bool operator==(const Piece&) const = default;
  };
  struct Block {
    QTextBlockFormat format;
    QTextCharFormat charFormat;
    QTextListFormat list = {};
    int itemNumber = -1;
    std::vector<Piece> pieces = {};
    bool operator==(const Block&) const = default;
  };

  std::vector<Block> blocks;
  bool operator==(const PaneContent&) const = default;

  static PaneContent of(const QTextDocument& document) {
    PaneContent content;
    std::vector<int> objects;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
      Block& read = content.blocks.emplace_back(Block{block.blockFormat(), block.charFormat()});
      // The toolkit's own number of a list depends on when the document was first laid
      // out, so it is replaced by the list's place in the document.
      if (const int object = read.format.objectIndex(); object >= 0) {
        const auto known = std::find(objects.begin(), objects.end(), object);
        read.format.setObjectIndex(static_cast<int>(known - objects.begin()));
        if (known == objects.end())
          objects.push_back(object);
      }
      if (const QTextList* list = block.textList()) {
        read.list = list->format();
        read.list.setObjectIndex(-1);
        read.itemNumber = list->itemNumber(block);
      }
      for (auto piece = block.begin(); piece != block.end(); ++piece)
        read.pieces.push_back({piece.fragment().text(), piece.fragment().charFormat()});
    }
    return content;
  }

  /// The first difference to the other one; empty if there is none.
  [[nodiscard]] QString differenceTo(const PaneContent& other) const {
    for (std::size_t i = 0; i < std::min(blocks.size(), other.blocks.size()); ++i) {
      const Block& a = blocks[i];
      const Block& b = other.blocks[i];
      if (a.format != b.format || a.charFormat != b.charFormat || a.list != b.list ||
          a.itemNumber != b.itemNumber)
        return QStringLiteral("formats of block %1").arg(i);
      for (std::size_t k = 0; k < std::max(a.pieces.size(), b.pieces.size()); ++k) {
        if (k >= a.pieces.size() || k >= b.pieces.size() || a.pieces[k] != b.pieces[k])
          return QStringLiteral("block %1, piece %2: %3 | %4")
              .arg(i)
              .arg(k)
              .arg(k < a.pieces.size() ? told(a.pieces[k]) : QStringLiteral("none"),
                   k < b.pieces.size() ? told(b.pieces[k]) : QStringLiteral("none"));
      }
    }
    return blocks.size() == other.blocks.size()
               ? QString()
               : QStringLiteral("%1 and %2 blocks").arg(blocks.size()).arg(other.blocks.size());
  }

 private:
  static QString told(const Piece& piece) {
    QString properties;
    const auto all = piece.format.properties();
    for (auto property = all.begin(); property != all.end(); ++property)
      properties +=
          QStringLiteral(" %1=%2")
              .arg(property.key(), 0, 16)
              .arg(property->canConvert<QBrush>() ? property->value<QBrush>().color().name()
                                                  : property->toString());
    return u'"' + QString(piece.text).replace(QChar(QChar::Null), QChar(0x2400)) + u'"' +
           properties;
  }
};

#include "terminal/view/DocumentCopy.h"

#include <QElapsedTimer>
#include <QTextBlock>
#include <QTextList>

namespace kelmora::terminal {

DocumentCopy::DocumentCopy(const QTextDocument& document)
    : document_(document),
      copy_(std::make_unique<QTextDocument>()),
      next_(document.begin()),
      end_(copy_.get()) {
  // Text appended to an empty last paragraph must not push the cursor behind it.
  next_.setKeepPositionOnInsert(true);
  copy_->setUndoRedoEnabled(false);
  copy_->setDefaultFont(document.defaultFont());
  copy_->setDefaultStyleSheet(document.defaultStyleSheet());
  copy_->setDefaultTextOption(document.defaultTextOption());
  copy_->setDocumentMargin(document.documentMargin());
  copy_->setIndentWidth(document.indentWidth());
}

bool DocumentCopy::advance(int milliseconds) {
  QElapsedTimer timer;
  timer.start();
  QTextBlock block = next_.block();
  // One edit block for all: each one has a fixed cost.
  end_.beginEditBlock();
  while (block.next().isValid() && timer.elapsed() < milliseconds) {
    copyBlock(block);
    block = block.next();
  }
  end_.endEditBlock();
  next_.setPosition(block.position());
  return !block.next().isValid();
}

std::unique_ptr<QTextDocument> DocumentCopy::take() && {
  copyBlock(document_.lastBlock());
  copy_->setMaximumBlockCount(document_.maximumBlockCount());
  return std::move(copy_);
}

void DocumentCopy::copyBlock(const QTextBlock& block) {
  QTextBlockFormat format = block.blockFormat();
  format.setObjectIndex(-1);
  if (!std::exchange(isBegun_, true)) {
    end_.setBlockFormat(format);
    end_.setBlockCharFormat(block.charFormat());
  } else {
    end_.insertBlock(format, block.charFormat());
  }
  for (auto piece = block.begin(); !piece.atEnd(); ++piece)
    end_.insertText(piece.fragment().text(), piece.fragment().charFormat());
  if (block.textList())
    copyList(block);
}

void DocumentCopy::copyList(const QTextBlock& block) {
  QTextList*& list = lists_[block.textList()->objectIndex()];
  if (!list)
    list = end_.createList(block.textList()->format());
  // To the toolkit, formats differ if their properties were set in another order.
  // createList() has changed that order, so the original's format is set again.
  QTextBlockFormat format = block.blockFormat();
  format.setObjectIndex(list->objectIndex());
  end_.setBlockFormat(format);
}

}  // namespace kelmora::terminal

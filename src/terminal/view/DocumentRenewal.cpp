#include "terminal/view/DocumentRenewal.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <algorithm>
#include <vector>

qsizetype characterFormatsInUse(const QTextDocument& document) {
  std::vector<bool> used(static_cast<std::size_t>(document.allFormats().size()));
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
    for (auto piece = block.begin(); !piece.atEnd(); ++piece)
      used[static_cast<std::size_t>(piece.fragment().charFormatIndex())] = true;
  return std::count(used.begin(), used.end(), true);
}

void renewDocument(QTextEdit& edit) {
  QTextDocument& document = *edit.document();
  const QTextCursor before = edit.textCursor();
  const int top = edit.verticalScrollBar()->value();
  const QTextDocumentFragment content(&document);
  const int anchor = before.anchor();
  const int position = before.position();
  document.clear();
  QTextCursor cursor(&document);
  cursor.insertFragment(content);
  cursor.setPosition(anchor);
  cursor.setPosition(position, QTextCursor::KeepAnchor);
  edit.setTextCursor(cursor);
  edit.verticalScrollBar()->setValue(top);
}

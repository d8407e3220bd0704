#include "terminal/view/DocumentRenewal.h"

#include <QScrollBar>
#include <QTextDocumentFragment>
#include <QTextEdit>

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

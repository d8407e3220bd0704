#pragma once

#include <QFont>
#include <QTextBrowser>
#include <functional>
#include <vector>

/// What a pane may be given to show, in the ways in which text gets there.
namespace layout_contents {

/// Server text: goes on in the last paragraph.
inline void insertText(QTextBrowser& browser, const QString& text) {
  browser.moveCursor(QTextCursor::End);
  browser.insertPlainText(text);
}
inline void insertColoured(QTextBrowser& browser, const QString& text, const QColor& colour,
                           const QColor& background) {
  browser.moveCursor(QTextCursor::End);
  browser.setTextColor(colour);
  browser.setTextBackgroundColor(background);
  browser.insertPlainText(text);
}
inline void insertHtml(QTextBrowser& browser, const QString& html) {
  browser.moveCursor(QTextCursor::End);
  browser.insertHtml(html);
}
/// A status line: a paragraph of its own.
inline void appendStatus(QTextBrowser& browser, const QString& html) {
  browser.append(html);
}

/// Adds to a page what its name says.
struct Content {
  const char* name;
  std::function<void(QTextBrowser&)> write;
};

/// Text and messages of every kind, and each tag that a server may use; the last
/// one is all of it on a page.
std::vector<Content> allContents();

struct FontRow {
  const char* name;
  QFont font;
};

/// The pane's own font and others; the program has the families of most with it.
std::vector<FontRow> fonts();

}  // namespace layout_contents

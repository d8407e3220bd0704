#pragma once

#include <QFont>
#include <QTextBrowser>
#include <functional>
#include <vector>

/// Contents that a pane may show, inserted in the ways in which text gets there.
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

/// Adds to a page the content that the name describes.
struct Content {
  const char* name;
  std::function<void(QTextBrowser&)> write;
};

/// Text and messages of every kind, and each tag that a server may use. The last
/// content is all of these together.
std::vector<Content> allContents();

struct FontRow {
  const char* name;
  QFont font;
};

/// The pane's own font and others, most of which are embedded in the program.
std::vector<FontRow> fonts();

}  // namespace layout_contents

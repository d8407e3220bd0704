// The output pane written a second time, as plainly as its rules can be said, for
// tests that compare.
#pragma once

#include <QTextBlock>
#include <QTextBrowser>
#include <optional>

/// The pane once more, as plainly as its rules can be said: each text goes into
/// the document when it comes, one by one, and all server text and status
/// lines through the toolkit's HTML importer. The quick pane must show the
/// same.
class LiteralPane : public QTextBrowser {
 public:
  /// The lengths in characters from which a paragraph is continued in a new
  /// one, at its next line break and anywhere.
  LiteralPane(qsizetype longParagraph, qsizetype longestParagraph)
      : longParagraph_(longParagraph), longestParagraph_(longestParagraph) {
    document()->setMaximumBlockCount(750);
    document()->setDefaultStyleSheet(QStringLiteral("a { color: #6fa8ff }"));
    setWordWrapMode(QTextOption::WordWrap);
    setReadOnly(true);
  }

  /// HTML that safeMarkup() has seen, here and below.
  void insertServerHtml(const QString& html) {
    moveCursor(QTextCursor::End);
    insertHtml(html);
    divideLastParagraph();
    moveCursor(QTextCursor::End);
  }
  void appendStatusLine(const QString& html) {
    moveCursor(QTextCursor::End);
    append(html);
    moveCursor(QTextCursor::End);
  }
  void echoSentText(const QString& text) { insertPlain(text, Qt::yellow, Qt::black); }
  void printText(const QString& text, const QColor& colour) {
    insertPlain(text + u'\n', colour.isValid() ? colour : QColor(Qt::white), Qt::black);
  }
  void printError(const QString& text) {
    insertPlain(QStringLiteral("## ") + text + u'\n', Qt::yellow, Qt::red);
  }
  void printInfo(const QString& text) {
    insertPlain(QStringLiteral("++ ") + text + u'\n', Qt::white, Qt::blue);
  }

 private:
  struct Division {
    qsizetype start;
    qsizetype length;
  };

  [[nodiscard]] std::optional<Division> divisionOf(const QString& paragraph) const {
    if (paragraph.size() <= longParagraph_)
      return std::nullopt;
    const qsizetype lineBreak = paragraph.indexOf(QChar::LineSeparator, longParagraph_);
    if (lineBreak >= 0 && lineBreak < longestParagraph_)
      return Division{lineBreak, 1};
    if (paragraph.size() <= longestParagraph_)
      return std::nullopt;
    const bool inPair = paragraph.at(longestParagraph_).isLowSurrogate();
    return Division{longestParagraph_ - (inPair ? 1 : 0), 0};
  }

  void divideLastParagraph() {
    QTextCursor cursor(document());
    for (;;) {
      const QTextBlock last = document()->lastBlock();
      const auto division = divisionOf(last.text());
      if (!division)
        return;
      cursor.setPosition(last.position() + static_cast<int>(division->start));
      cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor,
                          static_cast<int>(division->length));
      cursor.insertBlock();
    }
  }

  void insertPlain(const QString& text, const QColor& colour, const QColor& background) {
    moveCursor(QTextCursor::End);
    setTextColor(colour);
    setTextBackgroundColor(background);
    insertPlainText(text);
    moveCursor(QTextCursor::End);
  }

  qsizetype longParagraph_;
  qsizetype longestParagraph_;
};

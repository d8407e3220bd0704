#include "terminal/view/OutputWidget.h"

#include <QScrollBar>
#include <QTextBlock>

#include "terminal/view/InputWidget.h"

namespace {

struct Division {
  qsizetype start;
  qsizetype length;  ///< what the division replaces
};

std::optional<Division> divisionOf(const QString& paragraph) {
  if (paragraph.size() <= OutputWidget::longParagraph)
    return std::nullopt;
  const qsizetype lineBreak = paragraph.indexOf(QChar::LineSeparator, OutputWidget::longParagraph);
  if (lineBreak >= 0 && lineBreak < OutputWidget::longestParagraph)
    return Division{lineBreak, 1};
  if (paragraph.size() <= OutputWidget::longestParagraph)
    return std::nullopt;
  const bool inPair = paragraph.at(OutputWidget::longestParagraph).isLowSurrogate();
  return Division{OutputWidget::longestParagraph - (inPair ? 1 : 0), 0};
}

}  // namespace

OutputWidget::OutputWidget(InputWidget& inputBar, QWidget* parent)
    : QTextBrowser(parent), inputBar_(inputBar) {
  document()->setMaximumBlockCount(maximumParagraphs);
  // The toolkit's link blue is made for white paper.
  document()->setDefaultStyleSheet(QStringLiteral("a { color: #6fa8ff }"));
  setOpenExternalLinks(true);
  setWordWrapMode(QTextOption::WordWrap);
  setReadOnly(true);
  QWidget::setTabOrder(this, &inputBar_);
}

void OutputWidget::insertServerHtml(const QString& html) {
  moveCursor(QTextCursor::End);
  insertHtml(html);
  divideLastParagraph();
  moveCursor(QTextCursor::End);
}

void OutputWidget::appendStatusLine(const QString& html) {
  moveCursor(QTextCursor::End);
  append(html);
  moveCursor(QTextCursor::End);
}

void OutputWidget::echoSentText(const QString& text) {
  insertPlain(text, Qt::yellow, Qt::black);
}

void OutputWidget::printText(const QString& text, const QColor& colour) {
  insertPlain(text + u'\n', colour.isValid() ? colour : QColor(Qt::white), Qt::black);
}

void OutputWidget::printError(const QString& text) {
  insertPlain(QStringLiteral("## ") + text + u'\n', Qt::yellow, Qt::red);
}

void OutputWidget::printInfo(const QString& text) {
  insertPlain(QStringLiteral("++ ") + text + u'\n', Qt::white, Qt::blue);
}

QVariant OutputWidget::loadResource(int /*type*/, const QUrl& /*name*/) {
  // Empty, but not null: for a null answer the document goes and reads the
  // file itself.
  return QByteArray("");
}

void OutputWidget::resizeEvent(QResizeEvent* event) {
  QScrollBar& bar = *verticalScrollBar();
  const bool following = bar.value() == bar.maximum();
  QTextBrowser::resizeEvent(event);
  if (following)
    bar.setValue(bar.maximum());
}

void OutputWidget::doSetSource(const QUrl& /*name*/, QTextDocument::ResourceType /*type*/) {}

void OutputWidget::divideLastParagraph() {
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

void OutputWidget::insertPlain(const QString& text, const QColor& colour,
                               const QColor& background) {
  moveCursor(QTextCursor::End);
  setTextColor(colour);
  setTextBackgroundColor(background);
  insertPlainText(text);
  moveCursor(QTextCursor::End);
}

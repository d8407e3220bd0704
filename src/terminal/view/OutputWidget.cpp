#include "terminal/view/OutputWidget.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QFontMetricsF>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>
#include <utility>

#include "terminal/view/DocumentRenewal.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/PaneWriter.h"

namespace {

/// The toolkit's link blue is made for white paper.
QString linkStyle() {
  return QStringLiteral("a { color: #6fa8ff }");
}

constexpr int quiet = 3000;  // milliseconds without text
/// Beyond it, in bytes, who adds has to wait. Text seldom gets there: only
/// what makes no paragraphs, such as a flood of colours around nothing.
constexpr qsizetype longQueue = qsizetype{32} * 1024 * 1024;

}  // namespace

OutputWidget::OutputWidget(InputWidget& inputBar, QWidget* parent)
    : QTextBrowser(parent),
      inputBar_(inputBar),
      queue_(maximumParagraphs, {}),
      looks_(linkStyle()) {
  QTextBrowser::document()->setMaximumBlockCount(maximumParagraphs);
  QTextBrowser::document()->setDefaultStyleSheet(linkStyle());
  nextTurn_.setSingleShot(true);
  nextTurn_.setTimerType(Qt::PreciseTimer);
  connect(&nextTurn_, &QTimer::timeout, this, [this] { takeTurn(); });
  quietMoment_.setSingleShot(true);
  quietMoment_.setInterval(quiet);
  connect(&quietMoment_, &QTimer::timeout, this, [this] {
    if (queue_.isEmpty() && unusedFormats(manyFormats) > manyFormats)
      renew();
  });
  followTheEnd();
  setOpenExternalLinks(true);
  setWordWrapMode(QTextOption::WordWrap);
  setReadOnly(true);
  QWidget::setTabOrder(this, &inputBar_);
}

void OutputWidget::showServerText(ServerText text) {
  add(std::move(text));
}

void OutputWidget::appendStatusLine(SafeHtml html) {
  add<PaneText>(StatusLine{std::move(html)});
}

void OutputWidget::echoSentText(const QString& text) {
  add<PaneText>(PlainText{text, Qt::yellow, Qt::black});
}

void OutputWidget::printText(const QString& text, const QColor& colour) {
  add<PaneText>(PlainText{text + u'\n', colour.isValid() ? colour : QColor(Qt::white), Qt::black});
}

void OutputWidget::printError(const QString& text) {
  add<PaneText>(PlainText{QStringLiteral("## ") + text + u'\n', Qt::yellow, Qt::red});
}

void OutputWidget::printInfo(const QString& text) {
  add<PaneText>(PlainText{QStringLiteral("++ ") + text + u'\n', Qt::white, Qt::blue});
}

QTextDocument* OutputWidget::document() {
  insertWaiting(Amount::All);
  return QTextBrowser::document();
}

QString OutputWidget::toPlainText() {
  return document()->toPlainText();
}

QTextCursor OutputWidget::textCursor() {
  insertWaiting(Amount::All);
  return QTextBrowser::textCursor();
}

QVariant OutputWidget::loadResource(int /*type*/, const QUrl& /*name*/) {
  // Empty, but not null: for a null answer the document goes and reads the
  // file itself.
  return QByteArray("");
}

void OutputWidget::resizeEvent(QResizeEvent* event) {
  const bool following = followsTheEnd_;
  const QTextCursor top = cursorForPosition({0, 0});
  const int above = cursorRect(top).top();
  // Half as wide, it becomes twice as tall.
  if (const QSize before = event->oldSize(); before.width() > event->size().width())
    limitHeight(tallestDocument * static_cast<double>(event->size().width()) / before.width());
  QTextBrowser::resizeEvent(event);
  if (following)
    showTheEnd();
  else
    verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect(top).top() - above);
}

void OutputWidget::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) {
    const QFontMetricsF before(QTextBrowser::document()->defaultFont());
    const double growth = QFontMetricsF(font()).lineSpacing() / before.lineSpacing();
    // The lines become taller, and shorter too.
    if (growth > 1)
      limitHeight(tallestDocument / (growth * growth));
  }
  QTextBrowser::changeEvent(event);
}

void OutputWidget::followTheEnd() {
  QScrollBar& bar = *verticalScrollBar();
  connect(&bar, &QScrollBar::rangeChanged, this, [this, &bar] {
    if (followsTheEnd_)
      bar.setValue(bar.maximum());
  });
  connect(&bar, &QScrollBar::valueChanged, this, [this, &bar] {
    // Below the last line there is only the margin.
    followsTheEnd_ = bar.maximum() - bar.value() <= margin();
  });
}

void OutputWidget::showTheEnd() {
  QScrollBar& bar = *verticalScrollBar();
  bar.setValue(bar.maximum());
  // Where the toolkit has not yet laid out all of a long document, that was an
  // estimate; it tells the height by and by.
  QTextCursor end(QTextBrowser::document());
  end.movePosition(QTextCursor::End);
  const int below = cursorRect(end).bottom() + 1 + margin() - viewport()->height();
  bar.setValue(bar.value() + below);
  followsTheEnd_ = true;
}

int OutputWidget::margin() const {
  return static_cast<int>(QTextBrowser::document()->documentMargin());
}

void OutputWidget::doSetSource(const QUrl& /*name*/, QTextDocument::ResourceType /*type*/) {}

void OutputWidget::clear() {
  queue_.clear();
  QTextBrowser::clear();
  formatsInUse_ = 0;
}

template <typename Text>
void OutputWidget::add(Text text) {
  queue_.add(std::move(text));
  while (queue_.size() > longQueue)
    insertWaiting(Amount::WhatFitsATurn);
  const int delay = turns_.textComes();
  if (!nextTurn_.isActive())
    nextTurn_.start(delay);
  else if (nextTurn_.interval() == 0 && queue_.size() > PaneTurns::muchText)
    nextTurn_.start(frameLength);
}

void OutputWidget::takeTurn() {
  turns_.begin();
  insertWaiting(Amount::WhatFitsATurn);
  const int pause = turns_.end();
  if (!queue_.isEmpty())
    nextTurn_.start(pause);
}

void OutputWidget::insertWaiting(Amount amount) {
  if (queue_.isEmpty())
    return;
  QElapsedTimer timer;
  timer.start();
  // Text that shows no characters, such as colours around nothing, is none of
  // the characters that a turn takes, but takes its time all the same.
  const auto isOver = [&](qsizetype characters, double enough) {
    return static_cast<double>(characters) >= enough || timer.elapsed() >= PaneTurns::longestTurn;
  };
  const bool skipped = queue_.takeSkip();
  if (skipped)
    clearUnlessItShapesWhatFollows();
  moveCursor(QTextCursor::End);
  qsizetype written = 0;
  const double enough = turns_.characters({.bytes = queue_.size(), .skipped = skipped});
  const auto goesOn = [&](qsizetype characters) {
    return !queue_.isEmpty() && (amount == Amount::All || !isOver(characters, enough));
  };
  // Each character may be a line.
  const qsizetype mostInAChange = tallestChange / std::max(fontMetrics().lineSpacing(), 1);
  while (goesOn(written)) {
    const qsizetype before = written;
    {
      PaneWriter writer(*this, looks_, {});
      while (goesOn(before + writer.written()) && writer.written() < mostInAChange)
        writer.write(queue_.take());
      written = before + writer.written();
    }
    limitHeight(tallestDocument);
  }
  moveCursor(QTextCursor::End);
  showTheEnd();
  if (amount == Amount::WhatFitsATurn)
    turns_.learn(written, timer.nsecsElapsed());
  limitFormats();
}

void OutputWidget::limitHeight(double tallest) {
  QTextDocument& document = *QTextBrowser::document();
  const QAbstractTextDocumentLayout& layout = *document.documentLayout();
  const double excess = layout.blockBoundingRect(document.lastBlock()).bottom() - tallest;
  if (excess <= 0)
    return;
  int first = 0;
  for (QTextBlock block = document.begin(); block != document.lastBlock(); block = block.next())
    if (layout.blockBoundingRect(block).top() < excess)
      ++first;
  // The toolkit's own way to drop them.
  document.setMaximumBlockCount(document.blockCount() - first);
  document.setMaximumBlockCount(maximumParagraphs);
}

void OutputWidget::clearUnlessItShapesWhatFollows() {
  // A paragraph goes on in the format of the one before it.
  if (QTextBrowser::document()->lastBlock().blockFormat().propertyCount() == 0)
    QTextBrowser::document()->clear();
  formatsInUse_ = std::min(formatsInUse_, QTextBrowser::document()->allFormats().size());
}

qsizetype OutputWidget::formatsSinceLook() const {
  return QTextBrowser::document()->allFormats().size() - formatsInUse_;
}

qsizetype OutputWidget::unusedFormats(qsizetype worthALook) {
  if (formatsSinceLook() > worthALook)
    formatsInUse_ = characterFormatsInUse(*QTextBrowser::document());
  return formatsSinceLook();
}

void OutputWidget::limitFormats() {
  if (unusedFormats(tooManyFormats) > tooManyFormats)
    renew();
  else if (formatsSinceLook() > manyFormats)
    quietMoment_.start();
}

void OutputWidget::renew() {
  renewDocument(*this);
  formatsInUse_ = QTextBrowser::document()->allFormats().size();
}

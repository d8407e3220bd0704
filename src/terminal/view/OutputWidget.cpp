#include "terminal/view/OutputWidget.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <algorithm>
#include <utility>

#include "terminal/view/InputWidget.h"
#include "terminal/view/PaneWriter.h"

namespace {

/// The toolkit's link blue is made for white paper.
QString linkStyle() {
  return QStringLiteral("a { color: #6fa8ff }");
}

constexpr qint64 frame = 16;  // milliseconds
/// What a turn may take of a frame, in milliseconds; paint needs the rest.
constexpr qint64 turn = 8;
/// Beyond it, in bytes, who adds has to wait. Text seldom gets there: only
/// what makes no paragraphs, such as a flood of colours around nothing.
constexpr qsizetype longQueue = qsizetype{32} * 1024 * 1024;

}  // namespace

OutputWidget::OutputWidget(InputWidget& inputBar, QWidget* parent)
    : QTextBrowser(parent),
      inputBar_(inputBar),
      queue_({.paragraphs = maximumParagraphs, .longParagraph = longParagraph}),
      looks_(linkStyle()) {
  QTextBrowser::document()->setMaximumBlockCount(maximumParagraphs);
  QTextBrowser::document()->setDefaultStyleSheet(linkStyle());
  nextTurn_.setSingleShot(true);
  nextTurn_.setTimerType(Qt::PreciseTimer);
  connect(&nextTurn_, &QTimer::timeout, this, [this] { takeTurn(); });
  setOpenExternalLinks(true);
  setWordWrapMode(QTextOption::WordWrap);
  setReadOnly(true);
  QWidget::setTabOrder(this, &inputBar_);
}

void OutputWidget::showServerText(ServerText text) {
  add(std::move(text));
}

void OutputWidget::insertServerHtml(const QString& html) {
  add(SafeHtml{html});
}

void OutputWidget::appendStatusLine(const QString& html) {
  add(StatusLine{html});
}

void OutputWidget::echoSentText(const QString& text) {
  add(PlainText{text, Qt::yellow, Qt::black});
}

void OutputWidget::printText(const QString& text, const QColor& colour) {
  add(PlainText{text + u'\n', colour.isValid() ? colour : QColor(Qt::white), Qt::black});
}

void OutputWidget::printError(const QString& text) {
  add(PlainText{QStringLiteral("## ") + text + u'\n', Qt::yellow, Qt::red});
}

void OutputWidget::printInfo(const QString& text) {
  add(PlainText{QStringLiteral("++ ") + text + u'\n', Qt::white, Qt::blue});
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
  QScrollBar& bar = *verticalScrollBar();
  const bool following = bar.value() == bar.maximum();
  QTextBrowser::resizeEvent(event);
  if (following)
    bar.setValue(bar.maximum());
}

void OutputWidget::doSetSource(const QUrl& /*name*/, QTextDocument::ResourceType /*type*/) {}

void OutputWidget::clear() {
  while (!queue_.isEmpty())
    (void)queue_.take();
  QTextBrowser::clear();
}

void OutputWidget::add(PaneText text) {
  queue_.add(std::move(text));
  arriving_ = true;
  while (queue_.size() > longQueue)
    insertWaiting(Amount::WhatFitsAFrame);
  if (nextTurn_.isActive())
    return;
  const qint64 idle = sinceTurn_.isValid() ? sinceTurn_.elapsed() : frame;
  nextTurn_.start(static_cast<int>(std::max<qint64>(frame - idle, 0)));
}

void OutputWidget::takeTurn() {
  sinceTurn_.start();
  insertWaiting(Amount::WhatFitsAFrame);
  const qint64 taken = sinceTurn_.elapsed();
  // While more comes in, taking it in goes first: most of a flood is never
  // shown, and the less often it is, the sooner it is over.
  constexpr qint64 share = 8;
  const qint64 pause = std::exchange(arriving_, false) ? std::max(frame, share * taken) : frame;
  if (!queue_.isEmpty())
    nextTurn_.start(static_cast<int>(std::max<qint64>(pause - taken, 0)));
}

void OutputWidget::insertWaiting(Amount amount) {
  if (queue_.isEmpty())
    return;
  QElapsedTimer timer;
  timer.start();
  if (queue_.takeSkip())
    clearUnlessItShapesWhatFollows();
  moveCursor(QTextCursor::End);
  qsizetype written = 0;
  {
    PaneWriter writer(*this, looks_,
                      {.longParagraph = longParagraph, .longestParagraph = longestParagraph});
    const double enough = charactersPerMillisecond_ * turn;
    while (!queue_.isEmpty() &&
           (amount == Amount::All || static_cast<double>(writer.written()) < enough))
      writer.write(queue_.take());
    written = writer.written();
  }
  forgetUnusedFormats();
  moveCursor(QTextCursor::End);
  // A handful of characters tells nothing of the rate.
  constexpr qsizetype enoughToTell = 2048;
  if (written >= enoughToTell && amount == Amount::WhatFitsAFrame) {
    const double rate = static_cast<double>(written) * 1e6 /
                        static_cast<double>(std::max<qint64>(timer.nsecsElapsed(), 1));
    charactersPerMillisecond_ += (rate - charactersPerMillisecond_) / 4;
  }
}

void OutputWidget::forgetUnusedFormats() {
  QTextDocument& text = *QTextBrowser::document();
  if (text.allFormats().size() < mostFormats_)
    return;
  // Only what is in use goes along.
  const QTextDocumentFragment kept(&text);
  text.clear();
  QTextCursor(&text).insertFragment(kept);
  mostFormats_ = manyFormats + 2 * text.allFormats().size();
}

void OutputWidget::clearUnlessItShapesWhatFollows() {
  // A paragraph goes on in the format of the one before it.
  if (QTextBrowser::document()->lastBlock().blockFormat().propertyCount() == 0)
    QTextBrowser::document()->clear();
}

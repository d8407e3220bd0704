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

constexpr int frame = 16;  // milliseconds
/// What a turn may take, in milliseconds: of a frame, whose rest is for paint;
/// to catch up with much that waits, where paint is a third of the work; and
/// while more comes in than can be shown.
constexpr qint64 turn = 8;
constexpr qint64 catchUpTurn = 16;
constexpr qint64 floodTurn = 2;
/// More bytes than a pane shows at once. So much waits for the rest of its
/// frame even after a pause: lines that may be answered come with it.
constexpr qsizetype muchText = qsizetype{64} * 1024;
constexpr int quiet = 1000;  // milliseconds without text
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
  quietMoment_.setSingleShot(true);
  quietMoment_.setInterval(quiet);
  connect(&quietMoment_, &QTimer::timeout, this, [this] {
    if (queue_.isEmpty())
      renewDocument();
  });
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
  formatsAtFirst_ = 0;
}

void OutputWidget::add(PaneText text) {
  queue_.add(std::move(text));
  arriving_ = true;
  while (queue_.size() > longQueue)
    insertWaiting(Amount::WhatFitsAFrame);
  if (!nextTurn_.isActive()) {
    const qint64 idle = sinceTurn_.isValid() ? sinceTurn_.elapsed() : frame;
    nextTurn_.start(static_cast<int>(std::max<qint64>(frame - idle, 0)));
  } else if (nextTurn_.interval() == 0 && queue_.size() > muchText) {
    nextTurn_.start(frame);
  }
}

void OutputWidget::takeTurn() {
  sinceTurn_.start();
  insertWaiting(Amount::WhatFitsAFrame);
  const qint64 taken = sinceTurn_.elapsed();
  // While more comes in, taking it in goes first: most of a flood is never
  // shown, and the less often it is, the sooner it is over.
  constexpr qint64 share = 8;
  const qint64 pause =
      std::exchange(arriving_, false) ? std::max<qint64>(frame, share * taken) : frame;
  if (!queue_.isEmpty())
    nextTurn_.start(static_cast<int>(std::max<qint64>(pause - taken, 0)));
}

void OutputWidget::insertWaiting(Amount amount) {
  if (queue_.isEmpty())
    return;
  QElapsedTimer timer;
  timer.start();
  const bool skipped = queue_.takeSkip();
  if (skipped)
    clearUnlessItShapesWhatFollows();
  moveCursor(QTextCursor::End);
  qsizetype written = 0;
  {
    PaneWriter writer(*this, looks_,
                      {.longParagraph = longParagraph, .longestParagraph = longestParagraph});
    const bool much = queue_.size() > muchText;
    const bool flood = skipped || (arriving_ && much);
    const auto most = flood ? floodTurn : much ? catchUpTurn : turn;
    const double enough = charactersPerMillisecond_ * static_cast<double>(most);
    while (!queue_.isEmpty() &&
           (amount == Amount::All || static_cast<double>(writer.written()) < enough))
      writer.write(queue_.take());
    written = writer.written();
  }
  moveCursor(QTextCursor::End);
  if (newFormats() > tooManyFormats)
    renewDocument();
  else if (newFormats() > manyFormats)
    quietMoment_.start();
  // A handful of characters tells nothing of the rate.
  constexpr qsizetype enoughToTell = 2048;
  if (written >= enoughToTell && amount == Amount::WhatFitsAFrame) {
    const double rate = static_cast<double>(written) * 1e6 /
                        static_cast<double>(std::max<qint64>(timer.nsecsElapsed(), 1));
    charactersPerMillisecond_ += (rate - charactersPerMillisecond_) / 4;
  }
}

void OutputWidget::clearUnlessItShapesWhatFollows() {
  // A paragraph goes on in the format of the one before it.
  if (QTextBrowser::document()->lastBlock().blockFormat().propertyCount() == 0)
    QTextBrowser::document()->clear();
  formatsAtFirst_ = std::min(formatsAtFirst_, QTextBrowser::document()->allFormats().size());
}

qsizetype OutputWidget::newFormats() const {
  return QTextBrowser::document()->allFormats().size() - formatsAtFirst_;
}

void OutputWidget::renewDocument() {
  QTextDocument& document = *QTextBrowser::document();
  const QTextCursor before = QTextBrowser::textCursor();
  const int top = verticalScrollBar()->value();
  const QTextDocumentFragment content(&document);
  const int anchor = before.anchor();
  const int position = before.position();
  document.clear();
  QTextCursor cursor(&document);
  cursor.insertFragment(content);
  cursor.setPosition(anchor);
  cursor.setPosition(position, QTextCursor::KeepAnchor);
  setTextCursor(cursor);
  verticalScrollBar()->setValue(top);
  formatsAtFirst_ = document.allFormats().size();
}

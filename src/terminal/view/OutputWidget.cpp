#include "terminal/view/OutputWidget.h"

#include <QEvent>
#include <QTextBlock>
#include <algorithm>
#include <utility>

#include "terminal/view/InputWidget.h"
#include "terminal/view/PaneLayout.h"
#include "terminal/view/PaneWriter.h"

namespace {

/// The toolkit's link blue is made for white paper.
QString linkStyle() {
  return QStringLiteral("a { color: #6fa8ff }");
}

/// Milliseconds without text until what is out of sight is laid out, for so many
/// at a time.
constexpr int idle = 100;
constexpr int idleTurn = 4;
/// Beyond it, in bytes, who adds has to wait. Text seldom gets there: only
/// what makes no paragraphs, such as a flood of colours around nothing.
constexpr qsizetype longQueue = qsizetype{32} * 1024 * 1024;

}  // namespace

OutputWidget::OutputWidget(InputWidget& inputBar, QWidget* parent)
    : QTextBrowser(parent),
      inputBar_(inputBar),
      queue_({.paragraphs = maximumParagraphs, .longParagraph = longParagraph}),
      looks_(linkStyle()),
      sight_(*this) {
  giveLayout(*document());
  document()->setMaximumBlockCount(maximumParagraphs);
  document()->setDefaultStyleSheet(linkStyle());
  nextTurn_.setSingleShot(true);
  nextTurn_.setTimerType(Qt::PreciseTimer);
  connect(&nextTurn_, &QTimer::timeout, this, [this] { takeTurn(); });
  nextCopy_.setSingleShot(true);
  connect(&nextCopy_, &QTimer::timeout, this, [this] { renew(); });
  idleMoment_.setSingleShot(true);
  idleMoment_.setInterval(idle);
  connect(&idleMoment_, &QTimer::timeout, this, [this] {
    if (queue_.isEmpty() && sight_.refine(idleTurn))
      idleMoment_.start(frameLength);
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

void OutputWidget::settle() {
  write(QDeadlineTimer(QDeadlineTimer::Forever));
}

QVariant OutputWidget::loadResource(int /*type*/, const QUrl& /*name*/) {
  // Empty, but not null: for a null answer the document goes and reads the
  // file itself.
  return QByteArray("");
}

void OutputWidget::paintEvent(QPaintEvent* event) {
  sight_.layOutForPaint();
  QTextBrowser::paintEvent(event);
}

void OutputWidget::resizeEvent(QResizeEvent* event) {
  {
    const PaneSight::Change change(sight_);
    QTextBrowser::resizeEvent(event);
  }
  idleMoment_.start(idle);
}

void OutputWidget::changeEvent(QEvent* event) {
  if (event->type() != QEvent::FontChange) {
    QTextBrowser::changeEvent(event);
    return;
  }
  {
    const PaneSight::Change change(sight_);
    QTextBrowser::changeEvent(event);
  }
  idleMoment_.start(idle);
}

void OutputWidget::scrollContentsBy(int dx, int dy) {
  if (!sight_.isChanging())
    QTextBrowser::scrollContentsBy(dx, dy);
}

void OutputWidget::doSetSource(const QUrl& /*name*/, QTextDocument::ResourceType /*type*/) {}

void OutputWidget::add(PaneText text) {
  queue_.add(std::move(text));
  while (queue_.size() > longQueue)
    write(QDeadlineTimer(frameLength));
  const int delay = turns_.textComes();
  if (!nextTurn_.isActive())
    nextTurn_.start(delay);
  else if (nextTurn_.interval() == 0 && queue_.size() > PaneTurns::muchText)
    nextTurn_.start(frameLength);
}

void OutputWidget::takeTurn() {
  write(QDeadlineTimer(turns_.begin(queue_.size())));
  const int pause = turns_.end();
  if (!queue_.isEmpty())
    nextTurn_.start(pause);
}

void OutputWidget::write(QDeadlineTimer deadline) {
  if (queue_.isEmpty())
    return;
  // Where no text is selected it is there already, and goes along.
  QTextCursor cursor = textCursor();
  if (cursor.hasSelection() || !cursor.atEnd()) {
    cursor.setPosition(document()->characterCount() - 1);
    setTextCursor(cursor);
  }
  {
    const PaneSight::Change change(sight_, PaneSight::Keeps::Text);
    sight_.follow();
    auto& layout = *static_cast<PaneLayout*>(document()->documentLayout());
    layout.beginWriting();
    if (queue_.takeSkip())
      clearUnlessItShapesWhatFollows();
    {
      PaneWriter writer(*this, looks_,
                        {.longParagraph = longParagraph, .longestParagraph = longestParagraph});
      do
        writer.write(queue_.take());
      while (!queue_.isEmpty() && !deadline.hasExpired());
    }
    layout.endWriting();
  }
  idleMoment_.start(idle);
  limitFormats();
}

void OutputWidget::clearUnlessItShapesWhatFollows() {
  // A paragraph goes on in the format of the one before it.
  if (document()->lastBlock().blockFormat().propertyCount() > 0)
    return;
  copy_.reset();
  document()->clear();
  formatsAtRenewal_ = 0;
}

void OutputWidget::giveLayout(QTextDocument& document) {
  auto* const layout = new PaneLayout(document);
  layout->setPaintDevice(viewport());
  document.setDocumentLayout(layout);
}

void OutputWidget::limitFormats() {
  if (!copy_ && document()->allFormats().size() > 2 * formatsAtRenewal_ + manyFormats) {
    copy_.emplace(*document());
    nextCopy_.start(frameLength);
  }
}

void OutputWidget::renew() {
  if (!copy_)
    return;
  if (!queue_.isEmpty() || !copy_->advance(idleTurn)) {
    nextCopy_.start(frameLength);
    return;
  }
  QTextDocument* const renewed = std::move(*copy_).take().release();
  copy_.reset();
  renewed->setParent(this);
  const QTextCursor before = textCursor();
  const int anchor = before.anchor();
  const int position = before.position();
  {
    const PaneSight::Change change(sight_);
    QTextDocument* const old = document();
    giveLayout(*renewed);
    setDocument(renewed);
    if (old->parent() == this)
      old->deleteLater();
    QTextCursor cursor(renewed);
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
  }
  formatsAtRenewal_ = renewed->allFormats().size();
}

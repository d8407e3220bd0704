#include "terminal/view/OutputWidget.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QEvent>
#include <QMenu>
#include <utility>

#include "terminal/core/Log.h"
#include "terminal/view/InputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

/// After so many milliseconds without new text, what is out of sight is laid out,
/// in turns of so many milliseconds.
constexpr int idle = 100;
constexpr int idleTurn = 4;
/// After so many milliseconds without new text, unused formats are looked for.
constexpr int quiet = 3000;
/// When more bytes than this are waiting, adding text takes until enough of them
/// are written. Ordinary text does not get there, because most of a flood is
/// dropped unseen; a flood of what ends no paragraphs does, such as tags around
/// nothing.
constexpr qsizetype longQueue = qsizetype{32} * 1024 * 1024;

// What of a text is spoken.
const ServerText& spokenOf(const ServerText& text) {
  return text;
}
const SafeHtml& spokenOf(const StatusLine& line) {
  return line.html;
}
const QString& spokenOf(const PlainText& text) {
  return text.text;
}

}  // namespace

OutputWidget::OutputWidget(InputWidget& inputBar, QWidget* parent)
    : QTextBrowser(parent),
      inputBar_(inputBar),
      queue_(limits.paragraphs, limits.lengths),
      document_(*this, limits),
      sight_(*this),
      tools_(*this, sight_, inputBar),
      announcer_(*this),
      speech_([this](const QString& text) { announcer_.say(text); }) {
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
  quietMoment_.setSingleShot(true);
  quietMoment_.setInterval(quiet);
  connect(&quietMoment_, &QTimer::timeout, this, [this] {
    document_.renewIfFormatsAreUnused();
    renewLater();
  });
  setOpenExternalLinks(true);
  setWordWrapMode(QTextOption::WordWrap);
  setReadOnly(true);
  QWidget::setTabOrder(this, &inputBar_);
}

void OutputWidget::showServerText(ServerText text) {
  add(std::move(text));
}

void OutputWidget::appendStatusLine(SafeHtml html) {
  add(StatusLine{std::move(html)});
}

void OutputWidget::echoSentText(const QString& text) {
  add(PlainText{text, Qt::yellow, Qt::black}, Whose::Player);
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
  qCInfo(paneLog) << "a file or picture refused";
  // Empty but not null: given a null answer, the document would read the file
  // itself.
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
    document_.limitHeight();
  }
  tools_.layOut();
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
    document_.limitHeight();
  }
  tools_.layOut();
  idleMoment_.start(idle);
}

void OutputWidget::scrollContentsBy(int dx, int dy) {
  if (!sight_.isChanging())
    QTextBrowser::scrollContentsBy(dx, dy);
}

void OutputWidget::contextMenuEvent(QContextMenuEvent* event) {
  tools_.showMenu(*this, *event);
}

void OutputWidget::setTriggerMaker(TriggerMaker maker) {
  tools_.setTriggerMaker(std::move(maker));
}

void OutputWidget::doSetSource(const QUrl& /*name*/, QTextDocument::ResourceType /*type*/) {
  qCInfo(paneLog) << "a link was not followed, as it does not lead out of the client";
}

template <typename Text>
void OutputWidget::add(Text text, Whose whose) {
  if (QAccessible::isActive()) {
    if (whose == Whose::Other)
      speech_.hear(spokenOf(text));
    else
      speech_.hearEcho();
  }
  queue_.add(std::move(text));
  if (queue_.size() > longQueue)
    qCInfo(paneLog) << "text has to wait for the pane, bytes in the queue:" << queue_.size();
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
  tools_.beforeText();
  {
    const PaneSight::Change change(sight_, PaneSight::Keeps::Text);
    sight_.follow();
    document_.write(queue_, deadline);
  }
  idleMoment_.start(idle);
  quietMoment_.start();
  renewLater();
}

void OutputWidget::renewLater() {
  if (document_.isRenewing() && !nextCopy_.isActive())
    nextCopy_.start(frameLength);
}

void OutputWidget::renew() {
  if (queue_.isEmpty()) {
    const PaneSight::Change change(sight_, PaneSight::Keeps::Text);
    if (document_.renew(idleTurn, [this](QTextDocument& made) { tools_.beforeDocument(made); }))
      idleMoment_.start(idle);
  }
  renewLater();
}

#include "terminal/reading/ReadingTools.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
#include <QShortcut>
#include <QTextBlock>
#include <QTextBrowser>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "terminal/reading/DesktopPalette.h"
#include "terminal/reading/FindBar.h"
#include "terminal/reading/ReadBackView.h"

namespace kelmora::terminal {

namespace {

/// A line of the pane, without blanks around it, and a place in it.
struct ShownLine {
  QString text;
  qsizetype place;
};

/// The line of the game at a place. A paragraph has many.
ShownLine lineAt(const QTextBrowser& view, const QPoint& place) {
  const QTextCursor cursor = view.cursorForPosition(place);
  const QString paragraph = cursor.block().text();
  const qsizetype before = paragraph.lastIndexOf(
      QChar::LineSeparator, std::max<qsizetype>(cursor.positionInBlock() - 1, -1));
  const qsizetype behind = paragraph.indexOf(QChar::LineSeparator, cursor.positionInBlock());
  const qsizetype start = cursor.positionInBlock() == 0 ? 0 : before + 1;
  const qsizetype end = behind < 0 ? paragraph.size() : behind;
  const QString line = paragraph.sliced(start, end - start).replace(QChar::Nbsp, u' ');
  const QString text = line.trimmed();
  const qsizetype blanks = line.indexOf(text);
  return {text, std::clamp<qsizetype>(cursor.positionInBlock() - start - blanks, 0, text.size())};
}

/// Whether the event asks for the context menu by a key. Of the menu key, the toolkit's
/// text editor scrolls to its text cursor first, and in a text that is only read that is
/// far from what the reader sees. Shift+F10 it knows on Windows alone.
bool asksForMenuByKey(const QEvent& event) {
#ifndef Q_OS_WIN
  if (event.type() == QEvent::KeyPress) {
    const auto& press = static_cast<const QKeyEvent&>(event);
    return press.key() == Qt::Key_F10 && press.modifiers() == Qt::ShiftModifier;
  }
#endif
  return event.type() == QEvent::ContextMenu &&
         static_cast<const QContextMenuEvent&>(event).reason() == QContextMenuEvent::Keyboard;
}

}  // namespace

ReadingTools::ReadingTools(QTextBrowser& pane, PaneSight& sight, QWidget& inputBar)
    : pane_(pane), inputBar_(inputBar), readBack_(pane, sight) {
  pane_.installEventFilter(this);
  connect(&readBack_, &ReadBack::opened, this, [this] {
    ReadBackView& view = *readBack_.view();
    view.installEventFilter(this);
    connect(&view, &ReadBackView::menuWanted, this,
            [this, &view](const QContextMenuEvent& event) { showMenu(view, event); });
    orderTabs();
    if (findBar_)
      findBar_->layOut();
  });
  connect(&readBack_, &ReadBack::closed, this, [this] {
    if (!findBar_ || !findBar_->isAncestorOf(QApplication::focusWidget()))
      inputBar_.setFocus(Qt::OtherFocusReason);
  });
  connect(&readBack_, &ReadBack::raised, this, [this] {
    if (findBar_)
      findBar_->raise();
  });
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), &pane), &QShortcut::activated, this,
          [this] { find(); });
}

ReadingTools::~ReadingTools() = default;

void ReadingTools::layOut() {
  readBack_.layOut();
  if (findBar_)
    findBar_->layOut();
}

void ReadingTools::beforeDocument(QTextDocument& document) {
  if (findBar_)
    findBar_->beforeDocument(document);
  readBack_.beforeDocument(document);
}

void ReadingTools::find() {
  const QTextBrowser& read = readBack_.isOpen() && readBack_.view()->textCursor().hasSelection()
                                 ? *readBack_.view()
                                 : pane_;
  const QString selected = read.textCursor().selectedText().replace(QChar::Nbsp, u' ');
  if (!findBar_) {
    findBar_ = std::make_unique<FindBar>(pane_, readBack_);
    connect(findBar_.get(), &FindBar::dismissed, this, [this] { closeFindBar(); });
    orderTabs();
  }
  // Who has selected several lines wants to copy them.
  const bool isOneLine =
      !selected.contains(QChar::ParagraphSeparator) && !selected.contains(QChar::LineSeparator);
  findBar_->begin(isOneLine ? selected : QString());
}

void ReadingTools::orderTabs() {
  QWidget* last = findBar_ ? findBar_->lastControl() : nullptr;
  const auto follow = [&last](QWidget* next) {
    if (last)
      QWidget::setTabOrder(last, next);
    last = next;
  };
  if (readBack_.isOpen()) {
    follow(readBack_.view());
    follow(readBack_.border());
  }
  follow(&pane_);
  follow(&inputBar_);
}

void ReadingTools::closeFindBar() {
  // It is on its way through an event of its own.
  FindBar* const bar = findBar_.release();
  lastHit_ = bar->currentHit();
  bar->end();
  bar->deleteLater();
  inputBar_.setFocus(Qt::OtherFocusReason);
}

bool ReadingTools::eventFilter(QObject* watched, QEvent* event) {
  // Only the views are watched.
  if (!asksForMenuByKey(*event))
    return QObject::eventFilter(watched, event);
  event->accept();
  auto& view = *static_cast<QTextBrowser*>(watched);
  const QPoint place = placeForKeys(view);
  menuFor(view, place)->exec(view.viewport()->mapToGlobal(place));
  return true;
}

void ReadingTools::showMenu(QTextBrowser& view, const QContextMenuEvent& event) {
  menuFor(view, event.pos())->exec(event.globalPos());
}

QPoint ReadingTools::placeForKeys(const QTextBrowser& view) const {
  const QRect sight = view.viewport()->rect();
  for (const QTextCursor& cursor :
       {findBar_ ? findBar_->currentHit() : QTextCursor(), view.textCursor(), lastHit_})
    if (cursor.hasSelection() && cursor.document() == view.document()) {
      const QPoint place = view.cursorRect(cursor).center();
      if (sight.contains(place))
        return place;
    }
  const int step = QFontMetrics(view.font()).lineSpacing();
  QPoint place = sight.bottomLeft();
  while (place.y() > step && lineAt(view, place).text.isEmpty())
    place.ry() -= step;
  return place;
}

std::unique_ptr<QMenu> ReadingTools::menuFor(QTextBrowser& view, const QPoint& place) {
  auto menu = std::make_unique<QMenu>(&pane_);
  menu->setPalette(desktopPalette());
  const auto add = [&menu](const QString& text, bool isEnabled, auto&& act) {
    QAction* const action = menu->addAction(text, std::forward<decltype(act)>(act));
    action->setEnabled(isEnabled);
    return action;
  };
  const QString link = view.anchorAt(place);
  add(tr("&Copy"), view.textCursor().hasSelection(), [shown = QPointer(&view)] {
    if (shown)
      shown->copy();
  });
  if (!link.isEmpty()) {
    add(tr("&Open Link"), true, [link] { QDesktopServices::openUrl(QUrl(link)); });
    add(tr("Copy &Link Address"), true, [link] { QApplication::clipboard()->setText(link); });
  }
  add(tr("Select &All"), !view.document()->isEmpty(), [shown = QPointer(&view)] {
    if (shown)
      shown->selectAll();
  });
  menu->addSeparator();
  add(tr("&Find…"), true, [this] { find(); })->setShortcut(Qt::CTRL | Qt::Key_F);
  if (triggerMaker_.make) {
    const ShownLine line = lineAt(view, place);
    const QString pattern = triggerMaker_.patternFor(line.text, line.place);
    add(tr("Make a &Trigger of This Line…"), !pattern.isEmpty(),
        [this, pattern] { triggerMaker_.make(pattern); });
  }
  menu->addSeparator();
  QAction* const divides = add(tr("&Divide the Pane While Reading Back"), true, [this] {
    readBack_.setShare(readBack_.isWanted() ? 0 : ReadBack::usualShare);
  });
  divides->setCheckable(true);
  divides->setChecked(readBack_.isWanted());
  return menu;
}

}  // namespace kelmora::terminal

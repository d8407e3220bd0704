#include "terminal/reading/ReadBackView.h"

#include <QAbstractTextDocumentLayout>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

namespace kelmora::terminal {

ReadBackView::ReadBackView(QTextBrowser& pane, PaneSight& paneSight)
    : QTextBrowser(&pane), pane_(pane), paneSight_(paneSight), sight_(*this) {
  hide();
  setFrameShape(QFrame::NoFrame);
  setAccessibleName(tr("Earlier game text"));
  setOpenExternalLinks(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  // A wheel that has come to the end of this view is not for the pane behind it.
  setAttribute(Qt::WA_NoMousePropagation);
  setWordWrapMode(pane_.wordWrapMode());
  {
    const PaneSight::Change change(paneSight_);
    showDocument(*pane_.document());
  }
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
    if (!sight_.isChanging() && isVisible() && isAtEnd())
      Q_EMIT endReached();
  });
}

ReadBackView::~ReadBackView() {
  paneSight_.goAlone(sight_);
}

void ReadBackView::retire() {
  paneSight_.goAlone(sight_);
  hide();
  deleteLater();
}

void ReadBackView::showDocument(QTextDocument& document) {
  // The toolkit gives a document the width of each view that takes it on. This one
  // says the width that the pane has.
  setLineWrapMode(QTextEdit::FixedPixelWidth);
  setLineWrapColumnOrWidth(pane_.viewport()->width());
  const QTextCursor before = textCursor();
  const int anchor = before.anchor();
  const int position = before.position();
  const bool hasSelection = before.hasSelection();
  setDocument(&document);
  if (!hasSelection)
    return;
  QTextCursor selected(&document);
  selected.setPosition(anchor);
  selected.setPosition(position, QTextCursor::KeepAnchor);
  setTextCursor(selected);
}

void ReadBackView::takePlaceOfPane() {
  const PaneSight::Change change(paneSight_);
  paneSight_.goWith(sight_);
}

void ReadBackView::cover(int height) {
  const QWidget& viewport = *pane_.viewport();
  const QRect inside(viewport.geometry());
  const int bar = verticalScrollBar()->sizeHint().width();
  const int left = isRightToLeft() ? inside.left() - bar : inside.left();
  setGeometry(left, inside.top(), inside.width() + bar, height);
}

bool ReadBackView::isAtEnd() const {
  return verticalScrollBar()->value() >= pane_.verticalScrollBar()->maximum();
}

void ReadBackView::paintEvent(QPaintEvent* event) {
  sight_.layOutForPaint();
  QTextBrowser::paintEvent(event);
}

void ReadBackView::resizeEvent(QResizeEvent* event) {
  // Not the toolkit's text editor's, which would give the document its own width.
  const PaneSight::Change change(sight_);
  QAbstractScrollArea::resizeEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  adjustBar();
}

void ReadBackView::adjustBar() {
  const int height = viewport()->height();
  const auto whole = static_cast<int>(document()->documentLayout()->documentSize().height());
  verticalScrollBar()->setPageStep(height);
  verticalScrollBar()->setRange(0, std::max(whole - height, 0));
}

void ReadBackView::changeEvent(QEvent* event) {
  // The font of the document is the pane's to set.
  if (event->type() != QEvent::FontChange)
    QTextBrowser::changeEvent(event);
}

void ReadBackView::wheelEvent(QWheelEvent* event) {
  // With Ctrl it is for the size of the letters, which is the pane's to set.
  if (event->modifiers().testFlag(Qt::ControlModifier))
    QCoreApplication::sendEvent(pane_.viewport(), event);
  else
    QTextBrowser::wheelEvent(event);
}

void ReadBackView::scrollContentsBy(int dx, int dy) {
  if (!sight_.isChanging())
    QTextBrowser::scrollContentsBy(dx, dy);
}

void ReadBackView::contextMenuEvent(QContextMenuEvent* event) {
  Q_EMIT menuWanted(*event);
}

void ReadBackView::doSetSource(const QUrl& /*name*/, QTextDocument::ResourceType /*type*/) {}

}  // namespace kelmora::terminal

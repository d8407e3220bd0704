#include "terminal/reading/FindBar.h"

#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTextBrowser>
#include <QToolButton>
#include <algorithm>
#include <utility>

#include "terminal/reading/DesktopPalette.h"

namespace kelmora::terminal {

FindBar::FindBar(QTextBrowser& pane, ReadBack& readBack)
    : QFrame(&pane),
      pane_(pane),
      find_(std::make_unique<PaneFind>(pane, readBack)),
      announcer_(pane),
      row_(new QHBoxLayout) {
  // It is no part of the game's text, so it looks as the desktop has it.
  setPalette(desktopPalette());
  setFont(QApplication::font());
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setCursor(Qt::ArrowCursor);
  setAttribute(Qt::WA_NoMousePropagation);
  auto* const rows = new QVBoxLayout(this);
  constexpr int margin = 3;  // pixels
  rows->setContentsMargins(margin, margin, margin, margin);
  rows->setSpacing(margin);
  rows->addLayout(row_);
  words_ = new QLineEdit;
  words_->setPlaceholderText(tr("Find"));
  words_->setAccessibleName(tr("Find in the game text"));
  words_->setClearButtonEnabled(true);
  words_->installEventFilter(this);
  constexpr int fewest = 8;  // characters in sight, whatever stands beside them
  words_->setMinimumWidth(words_->minimumSizeHint().width() +
                          (fewest - 1) * fontMetrics().averageCharWidth());
  row_->addWidget(words_, 1);
  count_ = new QLabel;
  count_->setAccessibleDescription(tr("Hits"));
  row_->addWidget(count_);
  connect(&addButton(QStringLiteral("\u2191"), tr("Older hit"), tr("Older hit (Enter, F3)")),
          &QToolButton::clicked, this, &FindBar::goToOlder);
  connect(&addButton(QStringLiteral("\u2193"), tr("Newer hit"),
                     tr("Newer hit (Shift+Enter, Shift+F3)")),
          &QToolButton::clicked, this, &FindBar::goToNewer);
  matchCase_ = &addOption(QStringLiteral("Aa"), tr("Upper and lower case"));
  wholeWords_ = &addOption(QStringLiteral("\u201cw\u201d"), tr("Whole words"));
  expression_ = &addOption(QStringLiteral(".*"), tr("Regular expression"));
  connect(&addButton(QStringLiteral("\u2715"), tr("Close"), tr("Close (Esc)")),
          &QToolButton::clicked, this, &FindBar::dismissed);
  connect(words_, &QLineEdit::textChanged, this, [this] { look(); });
  // Until then more is typed.
  constexpr int pause = 500;  // milliseconds
  speaks_.setSingleShot(true);
  speaks_.setInterval(pause);
  connect(&speaks_, &QTimer::timeout, this, &FindBar::speak);
  connect(find_.get(), &PaneFind::counted, this, [this] { tellCount(); });
  tellCount();
  show();
}

QToolButton& FindBar::addButton(const QString& text, const QString& name, const QString& toolTip) {
  auto* const button = new QToolButton;
  button->setText(text);
  button->setAutoRaise(true);
  button->setToolTip(toolTip);
  button->setAccessibleName(name);
  // With F3 and Escape from anywhere in the bar.
  button->installEventFilter(this);
  row_->addWidget(button);
  return *button;
}

QToolButton& FindBar::addOption(const QString& text, const QString& name) {
  QToolButton& button = addButton(text, name, name);
  button.setCheckable(true);
  connect(&button, &QToolButton::toggled, this, [this] { look(); });
  return button;
}

void FindBar::begin(const QString& words) {
  if (!words.isEmpty())
    words_->setText(words);
  words_->setFocus(Qt::ShortcutFocusReason);
  words_->selectAll();
}

void FindBar::end() {
  hide();
  speaks_.stop();
  find_.reset();
}

void FindBar::layOut() {
  constexpr int usual = 460;  // pixels
  constexpr int margin = 6;
  const QRect inside = pane_.viewport()->geometry();
  const int room = inside.width() - 2 * margin;
  row_->invalidate();  // the toolkit tells it of another text only with a later event
  layout()->invalidate();
  placeCount(room);
  // With a large font of the desktop it takes as much more as there is.
  const int width = std::min(std::max(usual, sizeHint().width()), room);
  setGeometry(inside.right() - margin - width, inside.top() + margin, width, sizeHint().height());
  find_->setCovered(height() + margin);
  raise();
}

QWidget* FindBar::lastControl() const {
  return row_->itemAt(row_->count() - 1)->widget();
}

void FindBar::placeCount(int room) {
  const bool isBeside = row_->indexOf(count_) >= 0;
  int needed = minimumSizeHint().width();
  if (!isBeside)
    needed += count_->minimumSizeHint().width() + row_->spacing();
  const bool goesBeside = needed <= room;
  if (isBeside == goesBeside)
    return;
  layout()->removeWidget(count_);
  if (goesBeside)
    row_->insertWidget(1, count_);
  else
    static_cast<QVBoxLayout*>(layout())->addWidget(count_);
}

bool FindBar::eventFilter(QObject* watched, QEvent* event) {
  const bool isOverride = event->type() == QEvent::ShortcutOverride;
  if (!isOverride && event->type() != QEvent::KeyPress)
    return QFrame::eventFilter(watched, event);
  const auto& press = *static_cast<QKeyEvent*>(event);
  const bool isEnter =
      watched == words_ && (press.key() == Qt::Key_Return || press.key() == Qt::Key_Enter);
  if (press.key() != Qt::Key_Escape && press.key() != Qt::Key_F3 && !isEnter)
    return QFrame::eventFilter(watched, event);
  // Nobody else's while the bar has the keyboard: Escape would also close the view of
  // whoever reads back.
  event->accept();
  if (isOverride)
    return true;
  if (press.key() == Qt::Key_Escape)
    Q_EMIT dismissed();
  else if (press.modifiers().testFlag(Qt::ShiftModifier))
    goToNewer();
  else
    goToOlder();
  return true;
}

void FindBar::goToOlder() {
  find_->goToOlder();
  speakLater();
}

void FindBar::goToNewer() {
  find_->goToNewer();
  speakLater();
}

void FindBar::look() {
  TextFinder finder(words_->text(), {.matchCase = matchCase_->isChecked(),
                                     .wholeWords = wholeWords_->isChecked(),
                                     .expression = expression_->isChecked()});
  isNoExpression_ = expression_->isChecked() && !finder.isUsable();
  find_->look(std::move(finder));
  tellCount();
  speakLater();
}

void FindBar::speakLater() {
  if (QAccessible::isActive())
    speaks_.start();
}

void FindBar::speak() {
  if (words_->text().isEmpty())
    return;
  if (find_->isDone())
    announcer_.say(QString(find_->currentLine() + u'\n' + count_->text()).trimmed());
  else
    speaks_.start();
}

void FindBar::tellCount() {
  if (words_->text().isEmpty())
    count_->clear();
  else if (isNoExpression_)
    count_->setText(tr("No expression"));
  else if (find_->count() == 0)
    count_->setText(find_->isDone() ? tr("No hit") : QString());
  else if (find_->count() == PaneHits::most)
    count_->setText(tr("%1 of many").arg(find_->current()));
  else
    count_->setText(tr("%1 of %2").arg(find_->current()).arg(find_->count()));
  layOut();
}

}  // namespace kelmora::terminal

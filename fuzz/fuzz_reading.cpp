#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>
#include <QToolButton>
#include <QWheelEvent>
#include <array>
#include <memory>

#include "FuzzTarget.h"
#include "Surroundings.h"
#include "terminal/IdleHost.h"
#include "terminal/core/TextFinder.h"
#include "terminal/markup/SafeMarkup.h"
#include "terminal/reading/FindBar.h"
#include "terminal/reading/ReadBackView.h"
#include "terminal/reading/SplitHandle.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

namespace {

constexpr char endOfPart = '\x1E';

/// What a reader has, in a window that is as the last input left none.
class Reader {
 public:
  Reader() {
    window_.resize(500, 440);
    inputBar_.setGeometry(0, 410, 500, 30);
    pane_.setGeometry(0, 0, 500, 400);
    window_.show();
    inputBar_.setFocus();
  }

  /// Something that the game or the reader does.
  void take(char letter, const QByteArray& data);
  /// Checks all that holds between two events.
  void check() const;

 private:
  [[nodiscard]] ReadBackView* view() const {
    auto* const view = pane_.findChild<ReadBackView*>();
    return view && view->isVisible() ? view : nullptr;
  }
  [[nodiscard]] FindBar* bar() const {
    auto* const bar = pane_.findChild<FindBar*>();
    return bar && bar->isVisible() ? bar : nullptr;
  }
  [[nodiscard]] TextFinder finder() const;
  void checkHits() const;
  void settle() {
    pane_.settle();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  void say(const QByteArray& text) {
    for (const SafeHtml& piece : safeMarkupPieces(QString::fromUtf8(text), 8192))
      pane_.showServerText(std::vector{piece});
  }
  void sayMuch(const QByteArray& text, int times) {
    const QString line = QString::fromUtf8(text).simplified();
    for (int i = 0; i < times; ++i)
      pane_.printInfo(line);
  }
  void press(QWidget* widget, int key, Qt::KeyboardModifiers modifiers, const QString& text = {}) {
    if (!widget)
      return;
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(widget, &event);
  }
  void turnWheel(QWidget& over, int steps, Qt::KeyboardModifiers modifiers) {
    QWheelEvent wheel({20, 5}, over.mapToGlobal(QPointF(20, 5)), {}, {0, 120 * steps}, Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&over, &wheel);
  }
  void drag(int to) {
    auto* const handle = pane_.findChild<SplitHandle*>();
    if (!handle || !handle->isVisible())
      return;
    QMouseEvent move(QEvent::MouseMove, QPointF(30, to), handle->mapToGlobal(QPointF(30, to)),
                     Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(handle, &move);
  }

  IdleHost host_;
  QWidget window_;
  InputWidget& inputBar_ = *new InputWidget(host_, &window_);
  OutputWidget& pane_ = *new OutputWidget(inputBar_, &window_);
};

constexpr std::array scrollKeys{Qt::Key_Up,   Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown,
                                Qt::Key_Home, Qt::Key_End,  Qt::Key_Tab,    Qt::Key_Escape};

void Reader::take(char letter, const QByteArray& data) {
  const int number = data.isEmpty() ? 0 : static_cast<signed char>(data.front());
  const auto more = static_cast<unsigned char>(data.size() > 1 ? data[1] : 0);
  const Qt::KeyboardModifiers modifiers = more % 4 == 1   ? Qt::ControlModifier
                                          : more % 4 == 2 ? Qt::ShiftModifier
                                                          : Qt::NoModifier;
  switch (letter) {
    case 't':
      return say(data);
    case 'T':
      return sayMuch(data.mid(1), (number & 0x7F) * 8);
    case 'w':
      return turnWheel(*pane_.viewport(), number, modifiers);
    case 'W':
      if (view())
        turnWheel(*view()->viewport(), number, modifiers);
      return;
    case 'k':
      return press(&pane_, scrollKeys[more % scrollKeys.size()], Qt::NoModifier);
    case 'K':
      return press(view(), scrollKeys[more % scrollKeys.size()], Qt::NoModifier);
    case 'r':
      return pane_.resize(std::max(10 * (number & 0x7F), 1), std::max(8 * more, 1));
    case 'd':
      return drag(4 * number);
    case 'f':
      // No window is active here, so keys reach no shortcut.
      for (QShortcut* key : pane_.findChildren<QShortcut*>(Qt::FindDirectChildrenOnly))
        Q_EMIT key->activated();
      return;
    case 'o':
      if (bar()) {
        const auto buttons = bar()->findChildren<QToolButton*>();
        buttons[more % buttons.size()]->click();
      }
      return;
    case 'q':
      if (bar())
        bar()->findChild<QLineEdit*>()->setText(QString::fromUtf8(data));
      return;
    case 'e':
      if (bar())
        press(bar()->findChild<QLineEdit*>(), more % 8 ? Qt::Key_F3 : Qt::Key_Escape, modifiers);
      return;
    case 's':
      if (more % 2)
        pane_.selectAll();
      else if (view())
        view()->setTextCursor(view()->cursorForPosition({number, number}));
      return;
    case 'x':
      return pane_.verticalScrollBar()->setValue(8 * more);
    case 'c':
      return pane_.clear();
    default:
      return settle();
  }
}

TextFinder Reader::finder() const {
  TextFinder::Options options;
  for (const QToolButton* const button : bar()->findChildren<QToolButton*>())
    if (button->text() == QLatin1String("Aa"))
      options.matchCase = button->isChecked();
    else if (button->text() == QLatin1String(".*"))
      options.expression = button->isChecked();
    else if (button->isCheckable())
      options.wholeWords = button->isChecked();
  return TextFinder(bar()->findChild<QLineEdit*>()->text(), options);
}

void Reader::checkHits() const {
  if (bar()->findChild<QLineEdit*>()->text().isEmpty())
    return;
  const TextFinder finder = this->finder();
  std::size_t hits = 0;
  const QTextDocument& document = *pane_.document();
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
    hits += finder.hitsIn(block.text()).size();
  QString wanted = QStringLiteral(" of %1").arg(hits);
  if (!finder.isUsable())
    wanted = QStringLiteral("No expression");
  else if (hits == 0)
    wanted = QStringLiteral("No hit");
  else if (hits >= PaneHits::most)
    wanted = QStringLiteral(" of many");
  // Looking for words takes as many turns as it needs, but not for ever.
  const QLabel& told = *bar()->findChild<QLabel*>();
  constexpr int turns = 1000;
  for (int i = 0; i < turns && !told.text().endsWith(wanted); ++i)
    QCoreApplication::processEvents();
  fuzz::require(told.text().endsWith(wanted), "the hits are those of the whole text");
  const QTextCursor& hit = bar()->currentHit();
  if (hit.hasSelection())
    fuzz::require(hit.document() == &document, "the current hit is in what is shown");
}

void Reader::check() const {
  const QScrollBar& paneBar = *pane_.verticalScrollBar();
  if (const ReadBackView* const view = this->view()) {
    fuzz::require(view->document() == pane_.document(), "both views show one text");
    fuzz::require(paneBar.maximum() > 0, "all does not fit while it is divided");
    fuzz::require(view->height() < pane_.viewport()->height(), "newest lines are in sight");
    fuzz::require(view->viewport()->width() == pane_.viewport()->width(),
                  "both views are as wide as the text");
    const QScrollBar& bar = *view->verticalScrollBar();
    fuzz::require(bar.value() >= 0 && bar.value() <= bar.maximum(), "the place is in the text");
  }
  if (bar())
    checkHits();
}

}  // namespace

/// The leak sanitizer asks for it. What the font library keeps for each desktop font
/// that is first asked for is not ours to free.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is the sanitizer's
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig";
}

/// The input is in parts, each a letter and then what it needs: text of the game, or
/// a key, a turn of the wheel and whatever else a reader does; 0x1E ends a part.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Surroundings<QApplication>::provide();
  Reader reader;
  for (const QByteArray& part : fuzz::bytesOf(data, size).split(endOfPart)) {
    reader.take(part.isEmpty() ? '\0' : part.front(), part.mid(1));
    if (part.isEmpty())
      reader.check();
  }
  reader.take('\0', {});
  reader.check();
  return 0;
}

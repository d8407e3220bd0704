#include "terminal/view/InputWidget.h"

#include <QFocusEvent>
#include <QKeyEvent>

#include "terminal/view/InputHost.h"

using namespace kelmora;
using namespace kelmora::terminal;

InputWidget::InputWidget(InputHost& host, QWidget* parent) : QLineEdit(parent), host_(host) {}

bool InputWidget::event(QEvent* event) {
  // A line editor claims the platform's editing keys (on some, Ctrl+E moves to the
  // end) before any shortcut sees them. Here the toolbar's shortcuts come first.
  if (event->type() == QEvent::ShortcutOverride &&
      host_.claimsShortcut(static_cast<QKeyEvent*>(event)->keyCombination())) {
    event->ignore();
    return true;
  }
  return QLineEdit::event(event);
}

void InputWidget::keyPressEvent(QKeyEvent* event) {
  setFocus(Qt::OtherFocusReason);

  const Qt::KeyboardModifiers modifiers = event->modifiers();
  if (!modifiers.testFlag(Qt::KeypadModifier) && browsesOrMoves(event))
    return;
  if (modifiers.testFlag(Qt::ControlModifier) && answersControl(event->key()))
    return;
  if (!(modifiers & (Qt::ControlModifier | Qt::AltModifier)) && host_.dispatchMacro(event->key()))
    return;

  switch (event->key()) {
    case Qt::Key_Escape:
      clear();
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      host_.submitInput();
      return;
    default:
      QLineEdit::keyPressEvent(event);
  }
}

void InputWidget::focusOutEvent(QFocusEvent* event) {
  // A line that was sent stays selected, so that the next one takes its place. A key
  // that leads elsewhere for a moment, such as to the bar to find words, changes
  // nothing of that.
  const int start = selectionStart();
  const int length = selectionLength();
  QLineEdit::focusOutEvent(event);
  if (event->reason() == Qt::ShortcutFocusReason && length > 0)
    setSelection(start, length);
}

bool InputWidget::browsesOrMoves(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
      host_.historyOlder();
      return true;
    case Qt::Key_Down:
      host_.historyNewer();
      return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
      QLineEdit::keyPressEvent(event);
      return true;
    default:
      return false;
  }
}

bool InputWidget::answersControl(int key) {
  switch (key) {
    case Qt::Key_P:
      host_.historyOlder();
      return true;
    case Qt::Key_N:
      host_.historyNewer();
      return true;
    case Qt::Key_J:
      cursorBackward(false);
      return true;
    case Qt::Key_K:
      cursorForward(false);
      return true;
    default:
      return false;
  }
}

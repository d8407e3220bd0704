#include "automation/editors/KeyPressInput.h"

#include <QKeyEvent>

#include "automation/core/KeyNames.h"

using namespace kelmora;
using namespace kelmora::automation;

KeyPressInput::KeyPressInput(QWidget* parent) : QLineEdit(parent) {
  // So that the mouse can neither drop nor paste text here.
  setReadOnly(true);
  setContextMenuPolicy(Qt::NoContextMenu);
}

void KeyPressInput::reset() {
  clear();
  capturedKey_ = noKey;
}

bool KeyPressInput::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::ShortcutOverride:
      event->accept();
      return true;
    case QEvent::KeyPress:
      // Handled here, since the toolkit would move the focus at a Tab.
      keyPressEvent(static_cast<QKeyEvent*>(event));
      return true;
    case QEvent::InputMethod:
      event->ignore();
      return true;
    default:
      return QLineEdit::event(event);
  }
}

void KeyPressInput::keyPressEvent(QKeyEvent* event) {
  event->accept();
  const QString name = keyCodeToName(event->key());
  const bool bindable = name.size() > 1 || event->key() < 256;
  setText(bindable ? name : tr("<Invalid>"));
  capturedKey_ = bindable ? event->key() : noKey;
}

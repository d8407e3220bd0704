// The controls of a window as a player uses them: found by their words, clicked
// with the mouse, typed into key by key.
#pragma once

#include <QComboBox>
#include <QMetaMethod>
#include <QPushButton>
#include <QStringList>
#include <QTest>

/// The button below this widget with exactly this text; null where there is none.
inline QPushButton* buttonOf(const QWidget& window, const QString& text) {
  for (QPushButton* button : window.findChildren<QPushButton*>())
    if (button->text() == text)
      return button;
  return nullptr;
}

/// Clicks with the mouse, which does nothing where the control is disabled.
inline void click(QWidget* control) {
  QTest::mouseClick(control, Qt::LeftButton);
}

/// Deletes all text of the field and types another one, key by key.
template <typename Field>
void retype(Field* field, const QString& text) {
  field->setFocus();
  QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(field, Qt::Key_Delete);
  for (const QChar character : text) {
    if (character == u'\n')
      QTest::keyClick(field, Qt::Key_Return);
    else
      QTest::keyClicks(field, character);
  }
}

/// The texts of a combo box's list.
inline QStringList itemsOf(const QComboBox& box) {
  QStringList texts;
  for (int index = 0; index < box.count(); ++index)
    texts << box.itemText(index);
  return texts;
}

/// The signatures of the signals, slots and other methods that a class itself
/// declares to the toolkit, in their order.
inline QStringList methodsOf(const QMetaObject& type) {
  QStringList found;
  for (int index = type.methodOffset(); index < type.methodCount(); ++index)
    found << QString::fromLatin1(type.method(index).methodSignature());
  return found;
}

#pragma once

#include <QString>
#include <Qt>
#include <functional>

class InputWidget;
class QDialog;
class QMenu;
class QPushButton;
class QWidget;

namespace kelmora::tools {

/// Lets the program go on until the condition holds; false where it never does.
[[nodiscard]] bool waitFor(const std::function<bool()>& condition);
/// Lets it go on until all is painted that has come.
void settle();

void press(QWidget& widget, int key, const QString& text = {},
           Qt::KeyboardModifiers modifiers = Qt::NoModifier);
/// Types in place of what the bar holds, without Enter.
void typeInto(InputWidget& bar, const QString& words);
/// The button below this widget with exactly this text; null where there is none.
[[nodiscard]] QPushButton* buttonOf(const QWidget& window, const QString& text);

/// What this text of the window is in the language that it speaks.
[[nodiscard]] QString wordsOf(const QWidget& window, const QString& text);

/// Does what waits for a dialog to be closed, hands that dialog on, and closes it.
void meanwhile(const std::function<void(QDialog&)>& act, const std::function<void()>& open);
/// The same with a menu.
void meanwhileMenu(const std::function<void(QMenu&)>& act, const std::function<void()>& open);

}  // namespace kelmora::tools

#pragma once

#include <QString>
#include <Qt>
#include <functional>

class InputWidget;
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

}  // namespace kelmora::tools

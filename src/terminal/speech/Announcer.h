#pragma once

#include <QAccessible>
#include <QString>
#include <deque>

class QWidget;

namespace kelmora::terminal {

/// Has screen readers speak a text, wherever the focus is. docs/accessibility.md
/// says which of them hear it.
class Announcer {
 public:
  /// So many texts can still be asked for after they have been announced: a screen
  /// reader that is busy comes late.
  static constexpr std::size_t keptTexts = 64;

  /// The texts belong to the widget, which outlives this.
  explicit Announcer(QWidget& widget) : widget_(widget) {}
  ~Announcer();
  Q_DISABLE_COPY_MOVE(Announcer)

  void say(const QString& text);

 private:
  QWidget& widget_;
  std::deque<QAccessible::Id> notices_;  ///< not needed since Qt 6.8
};

}  // namespace kelmora::terminal

#pragma once

#include <QKeyCombination>

namespace kelmora::terminal {

/// What the input bar needs from its window.
class InputHost {
 public:
  virtual ~InputHost() = default;

  virtual void submitInput() = 0;
  virtual void historyOlder() = 0;
  virtual void historyNewer() = 0;

  /// Runs the macro bound to a key code (no modifier bits); false when none is.
  virtual bool dispatchMacro(int key) = 0;

  /// True while an enabled toolbar action answers to these keys.
  [[nodiscard]] virtual bool claimsShortcut(QKeyCombination keys) const = 0;
};

}  // namespace kelmora::terminal

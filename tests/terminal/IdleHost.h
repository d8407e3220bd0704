#pragma once

#include "terminal/view/InputHost.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// A window that does nothing, for the input bar of a pane under test.
class IdleHost : public InputHost {
 public:
  void submitInput() override {}
  void historyOlder() override {}
  void historyNewer() override {}
  bool dispatchMacro(int /*key*/) override { return false; }
  [[nodiscard]] bool claimsShortcut(QKeyCombination /*keys*/) const override { return false; }
};

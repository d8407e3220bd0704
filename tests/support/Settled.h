// The output pane once all its text is there.
#pragma once

#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// A pane with all text in its document that has come so far.
inline OutputWidget& settled(OutputWidget& pane) {
  pane.settle();
  return pane;
}

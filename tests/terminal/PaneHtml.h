#pragma once

#include "support/LiteralPane.h"
#include "terminal/markup/SafeMarkup.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

// Insert HTML into a pane under test, as if it had come in a read.

inline void insertServerHtml(OutputWidget& pane, const QString& html) {
  pane.showServerText(std::vector{safeMarkup(html)});
}
inline void insertServerHtml(LiteralPane& pane, const QString& html) {
  pane.insertServerHtml(safeMarkup(html).html());
}
inline void appendStatusLine(OutputWidget& pane, const QString& html) {
  pane.appendStatusLine(safeMarkup(html));
}
inline void appendStatusLine(LiteralPane& pane, const QString& html) {
  pane.appendStatusLine(safeMarkup(html).html());
}

#pragma once

#include <array>

class MainWidget;
class QAction;
class QToolBar;

namespace kelmora::app {

/// The toolbar's actions, left to right.
enum class ToolbarAction {
  Connect,
  Disconnect,
  SaveBuffer,
  ExportSettings,
  ImportSettings,
  Configure,
  Proxy,
  Macros,
  Aliases,
  Triggers,
  Help,
};

/// Fills the toolbar from the table of actions and connects each to its slot
/// of the window. The actions are children of the toolbar.
[[nodiscard]] std::array<QAction*, 11> addToolbarActions(QToolBar& toolbar, MainWidget& window);

}  // namespace kelmora::app

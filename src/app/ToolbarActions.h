#pragma once

#include <array>
#include <cstddef>

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
inline constexpr std::size_t toolbarActionCount = 11;

/// Fills the toolbar with the actions, in the order of ToolbarAction. They are
/// children of the toolbar; what they do is for the caller to connect.
[[nodiscard]] std::array<QAction*, toolbarActionCount> addToolbarActions(QToolBar& toolbar);

}  // namespace kelmora::app

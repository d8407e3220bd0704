#pragma once

#include <vector>

namespace kelmora::settings {

/// When the window takes options from the record. At the start that happens in
/// three steps, because the window is built in between.
enum class Occasion {
  Loaded,            ///< start: the record is read, the automation files are not
  FilesLoaded,       ///< start: the automation files are read, no widget is made
  WidgetsMade,       ///< start: toolbar, input bar and output pane are there
  Imported,          ///< an export file was read to its end
  GeneralApplied,    ///< Apply in the general settings
  ProxyApplied,      ///< Apply in the proxy settings
  InterfaceApplied,  ///< Apply in the interface settings
};

/// One thing that the window does with options.
enum class Effect {
  UsedProxy,    ///< installs the proxy if it is to be used; if not, the installed one stays
  ProxyOrNone,  ///< installs the proxy if it is to be used; if not, makes connections direct
  Colours,      ///< takes the sixteen colours; the next output begins in the reset colours
  BoldOff,      ///< the next colour code of the server means a normal colour
  WidgetStyle,  ///< sets the toolkit's style; a name that it does not know changes nothing
  IconSize,     ///< of the toolbar
  InputFont,    ///< of the input bar
  OutputFont,   ///< of the output pane
  Save,         ///< writes the variables to their file and all options to the store
};

/// What happens on an occasion, in this order, whether or not a value has
/// changed. An unchanged value counts too: after an import that failed half way,
/// the record is ahead of the window, and Apply brings the window up to it.
[[nodiscard]] std::vector<Effect> effectsOf(Occasion occasion);

}  // namespace kelmora::settings

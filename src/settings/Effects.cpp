#include "settings/Effects.h"

namespace kelmora::settings {

std::vector<Effect> effectsOf(Occasion occasion) {
  using enum Effect;
  switch (occasion) {
    case Occasion::Loaded:
      return {UsedProxy};
    case Occasion::FilesLoaded:
      return {WidgetStyle};
    case Occasion::WidgetsMade:
      return {Colours, IconSize, InputFont, OutputFont};
    case Occasion::Imported:
      return {UsedProxy, Colours, BoldOff, WidgetStyle, IconSize, InputFont, OutputFont};
    case Occasion::GeneralApplied:
      return {Colours, OutputFont, InputFont, Save};
    case Occasion::ProxyApplied:
      return {Save, ProxyOrNone};
    case Occasion::InterfaceApplied:
      return {Save, WidgetStyle, IconSize};
  }
  return {};
}

}  // namespace kelmora::settings

#pragma once

#include "settings/Effects.h"

namespace kelmora::dialogs {

/// What the settings dialogs need of the window whose options they edit.
class SettingsHost {
 public:
  virtual ~SettingsHost() = default;

  /// The record holds what was applied: the window is to do what belongs to
  /// this occasion (see settings::effectsOf).
  virtual void applySettings(settings::Occasion occasion) = 0;
};

}  // namespace kelmora::dialogs

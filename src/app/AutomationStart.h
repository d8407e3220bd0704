#pragma once

class QWidget;

namespace kelmora::app {

struct Profile;

/// Fills the profile's macros, triggers, aliases and variables from their files, in
/// this order. Each file that fails is told in a message box over the parent, then
/// the next one is read.
void loadAutomationFiles(QWidget& parent, Profile& profile);

}  // namespace kelmora::app

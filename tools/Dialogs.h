#pragma once

#include <QString>

class QDialog;

namespace kelmora::tools {

class Studio;

/// What an entry of an editor is to hold.
struct Entry {
  QString label;
  QString commands;
};

// Each opens a dialog, keeps a picture of it and closes it.

void keepGeneralSettings(Studio& studio);
void keepInterfaceSettings(Studio& studio);
void keepProxySettings(Studio& studio);
void keepHelp(Studio& studio);
/// Adds an entry and keeps a picture of it while it is being edited.
void keepAliases(Studio& studio, const Entry& entry);
void keepTriggers(Studio& studio, const Entry& entry);
/// Adds a macro of the key F2. The first picture is of the question for the key.
void keepMacros(Studio& studio, const QString& commands);
/// The question before an alias is deleted.
void keepDeleteQuestion(Studio& studio);
/// The boxes that say why an alias cannot be added or saved.
void keepRefusals(Studio& studio);
/// The box of a start with a file that cannot be read.
void keepStartFailure(Studio& studio);

}  // namespace kelmora::tools

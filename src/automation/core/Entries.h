#pragma once

#include <QString>
#include <QStringList>

namespace kelmora::automation {

/// A key and the commands to run when it is pressed. The key is the toolkit's key
/// code without modifier bits.
struct MacroEntry {
  qint32 key = 0;
  QStringList commands = {};

  friend bool operator==(const MacroEntry&, const MacroEntry&) = default;
};

/// A pattern, and the commands to run for every line of server text that it matches.
/// TriggerPattern tells what a pattern is.
struct TriggerEntry {
  QString pattern = {};
  QStringList commands = {};

  friend bool operator==(const TriggerEntry&, const TriggerEntry&) = default;
};

/// A name, and the commands to run in place of an action that is exactly this name.
struct AliasEntry {
  QString name = {};
  QStringList commands = {};

  friend bool operator==(const AliasEntry&, const AliasEntry&) = default;
};

}  // namespace kelmora::automation

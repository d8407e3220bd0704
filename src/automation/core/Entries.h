#pragma once

#include <QString>
#include <QStringList>

namespace kelmora::automation {

/// One key bound to commands. The key is Qt's key code without modifier bits.
struct MacroEntry {
  qint32 key = 0;
  QStringList commands = {};

  friend bool operator==(const MacroEntry&, const MacroEntry&) = default;
};

/// Commands to run for every line of server text that the pattern matches: plain
/// text, or a template with 1 to 10 wildcards written "{*}".
struct TriggerEntry {
  QString pattern = {};
  QStringList commands = {};

  friend bool operator==(const TriggerEntry&, const TriggerEntry&) = default;
};

/// Commands to run in place of an action that is exactly the name.
struct AliasEntry {
  QString name = {};
  QStringList commands = {};

  friend bool operator==(const AliasEntry&, const AliasEntry&) = default;
};

}  // namespace kelmora::automation

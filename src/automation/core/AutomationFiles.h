#pragma once

#include <QLatin1String>

#include <QMap>
#include <QString>

#include "automation/core/AliasTable.h"
#include "automation/core/MacroTable.h"
#include "automation/core/TriggerTable.h"

namespace kelmora::automation {

inline constexpr QLatin1String macrosPath("./macros.txt");
inline constexpr QLatin1String triggersPath("./triggers.txt");
inline constexpr QLatin1String aliasesPath("./aliases.txt");
inline constexpr QLatin1String variablesPath("./variables.txt");

/// The four files of the player's automation, in the working directory of the
/// process. Text in them is Latin-1.
///
/// It remembers which of them it could not read to the end: before such a file
/// is written for the first time, it is kept beside as NAME.bak, or NAME.bak2
/// and so on (textfile::keepBeside).
class AutomationFiles {
 public:
  // Each adds the entries of its file at the end of the table; a file that is
  // missing is created empty, which is a success. False when the file can be
  // neither read nor created, and when a line of it makes no sense; the entries
  // before that line are in the table then. A block without an end, the last
  // one of a file, is dropped without a word.
  [[nodiscard]] static bool loadMacros(MacroTable& table);
  [[nodiscard]] bool loadTriggers(TriggerTable& table);
  [[nodiscard]] bool loadAliases(AliasTable& table);
  /// A second definition of a variable is a line that makes no sense.
  [[nodiscard]] bool loadVariables(QMap<QString, QString>& variables);

  // Each puts its table in place of the file as a whole. False when that could
  // not be done, or what the old file holds could not be kept; it stands then.
  [[nodiscard]] bool writeTriggers(const TriggerTable& table);
  [[nodiscard]] bool writeAliases(const AliasTable& table);
  [[nodiscard]] bool writeVariables(const QMap<QString, QString>& variables);

  /// Macros are not kept: this empties the file, whatever is in it, and is then
  /// false; it is true when the file could not be opened.
  [[nodiscard]] static bool writeMacros(const MacroTable& table);

 private:
  /// One of them.
  struct TableFile {
    QLatin1String path;
    /// Something stands in it that is in no table.
    bool unread = false;

    [[nodiscard]] bool write(QByteArrayView bytes);
  };

  TableFile triggers_{triggersPath};
  TableFile aliases_{aliasesPath};
  TableFile variables_{variablesPath};
};

}  // namespace kelmora::automation

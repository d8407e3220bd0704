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
/// process. Their text is Latin-1.
///
/// An object of this class remembers which of the files it could not read to the
/// end. Before it writes over such a file for the first time, it keeps a copy
/// beside it (files::keepBeside).
class AutomationFiles {
 public:
  // Each load adds the entries of its file at the end of the table. A missing file
  // is created empty, and the load succeeds. It fails when the file can be neither
  // read nor created, when the file is too long, and at a line that makes no sense;
  // the entries before that line are in the table then. A last block without an end
  // line is dropped, and the load succeeds all the same.
  [[nodiscard]] static bool loadMacros(MacroTable& table);
  [[nodiscard]] bool loadTriggers(TriggerTable& table);
  [[nodiscard]] bool loadAliases(AliasTable& table);
  /// A line that defines a variable for the second time makes no sense either.
  [[nodiscard]] bool loadVariables(QMap<QString, QString>& variables);

  // Each replaces its whole file by the table. False, and the old file unchanged,
  // when that is not possible, or when a copy of the old file had to be kept and
  // could not be made.
  [[nodiscard]] bool writeTriggers(const TriggerTable& table);
  [[nodiscard]] bool writeAliases(const AliasTable& table);
  [[nodiscard]] bool writeVariables(const QMap<QString, QString>& variables);

  /// A quirk kept on purpose: macros are never written. This empties the file and
  /// returns false; it returns true where the file could not even be opened.
  [[nodiscard]] static bool writeMacros(const MacroTable& table);

 private:
  /// One of the files that are written.
  struct TableFile {
    QLatin1String path;
    /// Whether the file holds something that did not get into the table.
    bool isUnread = false;

    [[nodiscard]] bool write(QByteArrayView bytes);
  };

  TableFile triggers_{triggersPath};
  TableFile aliases_{aliasesPath};
  TableFile variables_{variablesPath};
};

}  // namespace kelmora::automation

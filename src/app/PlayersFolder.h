#pragma once

#include <QString>
#include <optional>

namespace kelmora::app {

/// Why the player's files cannot be kept, for a box before the window opens.
struct FolderTrouble {
  QString text;
  bool canPlay;  ///< the files that are there can at least be read
};

/// What hinders FOLDER from holding the player's files; the program has to be in it.
[[nodiscard]] std::optional<FolderTrouble> troubleWith(const QString& folder);

/// Shows a box if the folder that the launcher names is in trouble. Returns whether
/// the window may open. Started without the launcher, the player has chosen the
/// folder, and nothing is asked.
[[nodiscard]] bool checkPlayersFolder();

}  // namespace kelmora::app

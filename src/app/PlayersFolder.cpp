#include "app/PlayersFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace kelmora::app {

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(PlayersFolder)
};

constexpr std::uintmax_t leastSpace = std::uintmax_t{64} * 1024;  // bytes

// Asks for the folder itself. The toolkit would look for it in the table of mounts,
// where the root of a container need not stand.
bool isFull(const QFileInfo& folder) {
  std::error_code unknown;
  const auto space = std::filesystem::space(folder.filesystemFilePath(), unknown);
  return !unknown && space.available < leastSpace;
}

}  // namespace

std::optional<FolderTrouble> troubleWith(const QString& folder) {
  const QFileInfo info(folder);
  const QString shown = QDir::toNativeSeparators(folder);
  if (!info.isDir() || info.canonicalFilePath() != QDir::current().canonicalPath())
    return FolderTrouble{
        Words::tr("The folder for your files cannot be made or entered:\n%1\nIs the "
                  "disk full, or is a folder in its path write-protected?")
            .arg(shown),
        false};
  if (!info.isWritable() || isFull(info))
    return FolderTrouble{
        Words::tr("Nothing can be written in the folder of your files:\n%1\nIt is "
                  "write-protected, or the disk is full. You can play, but what you "
                  "change in aliases, triggers and variables will be lost.")
            .arg(shown),
        true};
  return std::nullopt;
}

bool checkPlayersFolder() {
  const QString folder = qEnvironmentVariable("KELMORA_FOLDER");
  if (folder.isEmpty())
    return true;
  const auto trouble = troubleWith(folder);
  if (!trouble)
    return true;
  QMessageBox::warning(nullptr, QStringLiteral("Kelmora"), trouble->text);
  return trouble->canPlay;
}

}  // namespace kelmora::app

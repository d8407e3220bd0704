#include "automation/core/AutomationFiles.h"

#include <functional>
#include <utility>

#include "automation/core/BlockFile.h"
#include "automation/core/KeyNames.h"
#include "automation/core/VariablesFile.h"
#include "files/TextFile.h"

namespace kelmora::automation {

namespace {

using blockfile::Reading;

/// A file that cannot be read at all, or is too long, stops the reading as a
/// line that makes no sense does.
Reading readBlocks(QLatin1String path, const BlockFormat& format,
                   const std::function<void(Block&&)>& take) {
  const auto file = files::read(path);
  if (!file)
    return Reading::Stopped;
  const Reading reading = blockfile::read(file->bytes, format, take);
  return file->whole ? reading : Reading::Stopped;
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
  if (unread && !files::keepBeside(path))
    return false;
  unread = false;
  return files::replace(path, bytes);
}

bool AutomationFiles::loadMacros(MacroTable& table) {
  const auto take = [&](Block&& block) {
    table.append({keyNameToCode(block.label), std::move(block.commands)});
  };
  return readBlocks(macrosPath, blockfile::macros, take) != Reading::Stopped;
}

bool AutomationFiles::loadTriggers(TriggerTable& table) {
  const Reading reading = readBlocks(triggers_.path, blockfile::triggers, [&](Block&& block) {
    table.append({std::move(block.label), std::move(block.commands)});
  });
  triggers_.unread = reading != Reading::Whole;
  return reading != Reading::Stopped;
}

bool AutomationFiles::loadAliases(AliasTable& table) {
  const Reading reading = readBlocks(aliases_.path, blockfile::aliases, [&](Block&& block) {
    table.append({std::move(block.label), std::move(block.commands)});
  });
  aliases_.unread = reading != Reading::Whole;
  return reading != Reading::Stopped;
}

bool AutomationFiles::loadVariables(QMap<QString, QString>& variables) {
  const auto file = files::read(variables_.path);
  const bool success = file && variablesfile::read(file->bytes, variables) && file->whole;
  variables_.unread = !success;
  return success;
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

// A quirk kept on purpose: the question is asked the wrong way round, so that
// the blocks go nowhere in either case and the answer is the opposite.
bool AutomationFiles::writeMacros(const MacroTable& /*table*/) {
  return !files::openAndEmpty(macrosPath);
}

}  // namespace kelmora::automation

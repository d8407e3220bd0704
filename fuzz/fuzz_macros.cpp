#include "BlockFileRound.h"
#include "automation/core/AutomationFiles.h"
#include "automation/core/KeyNames.h"

namespace {

QList<Block> blocksIn(const QByteArray& bytes, bool& success) {
  QList<Block> blocks;
  success = blockfile::read(bytes, blockfile::macros,
                            [&](Block&& block) { blocks.append(std::move(block)); });
  return blocks;
}

/// The file that the writer would leave if macros were kept.
QByteArray textOf(const QList<Block>& blocks) {
  QByteArray text;
  for (const Block& block : blocks)
    blockfile::append(text, blockfile::macros, block.label, block.commands);
  return text;
}

/// What the table answers for a key is what its first macro says.
void requireFirstOfEachKey(const MacroTable& table) {
  QHash<qint32, QStringList> first;
  for (const MacroEntry& entry : table.entries())
    if (!first.contains(entry.key))
      first.insert(entry.key, entry.commands);
  for (auto macro = first.cbegin(); macro != first.cend(); ++macro) {
    const QStringList* const commands = table.commandsOf(macro.key());
    fuzz::require(commands != nullptr && *commands == *macro, "the first macro of a key wins");
  }
}

}  // namespace

/// The input is the whole file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Surroundings<QCoreApplication>::provide();
  const QByteArray bytes = fuzz::bytesOf(data, size);
  bool success = false;
  const QList<Block> blocks = blocksIn(bytes, success);
  fuzz::require(
      shape(blocks, success) == readShapeByTheLibraries(blockfile::macros, bytes, "macro %s"),
      "the file is read as the libraries read it");
  if (const auto expected = fuzz::rewritten(blocks, blockfile::macros)) {
    bool successAgain = false;
    const QList<Block> again = blocksIn(textOf(blocks), successAgain);
    fuzz::require(shape(again, successAgain) == shape(*expected, true),
                  "blocks come back from their text");
  }

  fuzz::require(put(automation::macrosPath, bytes), "the file can be made");
  MacroTable table;
  fuzz::require(automation::loadMacros(table) == success, "the file loads as it reads");
  fuzz::require(table.size() == blocks.size(), "each block is a macro");
  for (qsizetype place = 0; place < table.size(); ++place) {
    const MacroEntry& macro = table.entries().at(place);
    fuzz::require(
        macro == MacroEntry{keyNameToCode(blocks.at(place).label), blocks.at(place).commands},
        "a macro has the key that its block names");
    if (macro.key >= 0)
      fuzz::require(keyNameToCode(keyCodeToName(macro.key)) == macro.key,
                    "a key comes back from its name");
  }
  requireFirstOfEachKey(table);

  fuzz::require(!automation::writeMacros(table), "macros are not kept");
  MacroTable none;
  fuzz::require(automation::loadMacros(none) && none.isEmpty(), "what is left is an empty file");
  fuzz::require(namesHere().size() == 1, "no other file is left behind");
  return 0;
}

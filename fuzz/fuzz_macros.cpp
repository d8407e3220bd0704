#include "BlockFileRound.h"
#include "automation/core/AutomationFiles.h"
#include "automation/core/KeyNames.h"
#include "support/FileText.h"
#include "support/OwnFolder.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

QList<Block> blocksIn(const QByteArray& bytes, bool& success) {
  QList<Block> blocks;
  const Reading reading = blockfile::read(bytes, blockfile::macros,
                                          [&](Block&& block) { blocks.append(std::move(block)); });
  success = reading.isSuccess();
  return blocks;
}

/// The file that would be written if macros were kept.
QByteArray textOf(const QList<Block>& blocks) {
  QByteArray text;
  for (const Block& block : blocks)
    blockfile::append(text, blockfile::macros, block.label, block.commands);
  return text;
}

void requireKeyOf(const QString& label, qint32 key) {
  // Only keys with one of the 22 names have a code above 255.
  if (key > 0xFF)
    fuzz::require(keyCodeToName(key) == label, "a named key is stored under its name");
  else
    fuzz::require(key == static_cast<signed char>(label.toLatin1().front()),
                  "any other key is the first byte of its name");
}

/// For each key, the table must find the commands of the first macro with that key.
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
  fuzz::require(AutomationFiles::loadMacros(table) == success, "the file loads as it reads");
  fuzz::require(table.size() == blocks.size(), "each block is a macro");
  for (qsizetype place = 0; place < table.size(); ++place) {
    const MacroEntry& macro = table.entries().at(place);
    const Block& block = blocks.at(place);
    fuzz::require(macro.commands == block.commands, "a macro has the commands of its block");
    requireKeyOf(block.label, macro.key);
  }
  requireFirstOfEachKey(table);

  fuzz::require(!AutomationFiles::writeMacros(table), "macros are not kept");
  MacroTable none;
  fuzz::require(AutomationFiles::loadMacros(none) && none.size() == 0,
                "what is left is an empty file");
  fuzz::require(namesHere().size() == 1, "no other file is left behind");
  return 0;
}

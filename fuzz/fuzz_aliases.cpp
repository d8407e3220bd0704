#include "BlockFileRound.h"
#include "automation/core/AutomationFiles.h"

using namespace kelmora;
using namespace kelmora::automation;

/// The input is the whole file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr fuzz::BlockFileKind<AliasTable> kind{
      blockfile::aliases, automation::aliasesPath, "alias \"%[^\"]\"",
      &AutomationFiles::loadAliases, &AutomationFiles::writeAliases};
  fuzz::loadWriteAndLoad(kind, fuzz::bytesOf(data, size),
                         [](const AliasEntry& entry) { return entry.name; });
  return 0;
}

#include "BlockFileRound.h"
#include "automation/core/AutomationFiles.h"

using namespace kelmora;
using namespace kelmora::automation;

/// The input is the whole file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr fuzz::BlockFileKind<TriggerTable> kind{
      blockfile::triggers, automation::triggersPath, "trigger \"%[^\"]\"",
      &AutomationFiles::loadTriggers, &AutomationFiles::writeTriggers};
  fuzz::loadWriteAndLoad(kind, fuzz::bytesOf(data, size),
                         [](const TriggerEntry& entry) { return entry.pattern; });
  return 0;
}

#pragma once

#include "automation/core/Entries.h"
#include "automation/core/KeyedTable.h"

namespace kelmora::automation {

/// The player's macros in their order. A file may bind a key twice; then the first
/// macro is found. The key of an entry never changes.
class MacroTable : public KeyedTable<MacroEntry, &MacroEntry::key> {};

}  // namespace kelmora::automation

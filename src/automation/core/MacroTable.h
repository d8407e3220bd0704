#pragma once

#include "automation/core/Entries.h"
#include "automation/core/KeyedTable.h"

namespace kelmora::automation {

/// The player's macros in their order. A file may bind a key twice: the first
/// macro wins. An entry keeps its key for life.
class MacroTable : public KeyedTable<MacroEntry, &MacroEntry::key> {};

}  // namespace kelmora::automation

#pragma once

#include <QString>
#include <utility>

#include "automation/core/Entries.h"
#include "automation/core/KeyedTable.h"

namespace kelmora::automation {

/// The player's aliases in their order. Two may have the same name; then the first
/// one is found. A name is found only by a text that is the same character for
/// character, with nothing before or behind it.
class AliasTable : public KeyedTable<AliasEntry, &AliasEntry::name> {
 public:
  void rename(qsizetype position, QString name) { setKey(position, std::move(name)); }
};

}  // namespace kelmora::automation

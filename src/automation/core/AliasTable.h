#pragma once

#include <QString>
#include <utility>

#include "automation/core/Entries.h"
#include "automation/core/KeyedTable.h"

namespace kelmora::automation {

/// The player's aliases in their order. Names may repeat: the first one wins.
/// A name is compared with the whole action, code unit by code unit.
class AliasTable : public KeyedTable<AliasEntry, &AliasEntry::name> {
 public:
  void rename(qsizetype position, QString name) { setKey(position, std::move(name)); }
};

}  // namespace kelmora::automation

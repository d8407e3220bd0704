// A table for a test, filled in one expression.
#pragma once

#include <QList>

/// A table with these entries, such as tableOf<AliasTable>({{"n", {"north"}}}).
template <typename Table>
Table tableOf(const decltype(Table().entries())& entries) {
  Table table;
  for (const auto& entry : entries)
    table.append(entry);
  return table;
}

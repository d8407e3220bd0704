#pragma once

#include <QStringList>

namespace kelmora::script {

/// How the interpreter asks for aliases, wherever they are kept.
class AliasLookup {
 public:
  virtual ~AliasLookup() = default;

  /// The commands of the first alias with exactly this name, null where there
  /// is none. The list is copied before the caller does anything else, so it
  /// need not outlive the next change of the table.
  [[nodiscard]] virtual const QStringList* commandsOf(const QString& name) const = 0;
};

}  // namespace kelmora::script

#pragma once

#include <QStringList>

namespace kelmora::script {

/// Where the interpreter looks aliases up.
class AliasLookup {
 public:
  virtual ~AliasLookup() = default;

  /// The commands of the first alias with exactly this name, null if there is
  /// none. The caller copies the list at once, so it only has to stay valid
  /// until the aliases change.
  [[nodiscard]] virtual const QStringList* commandsOf(const QString& name) const = 0;
};

}  // namespace kelmora::script

#pragma once

#include <QStringList>
#include <QTranslator>

namespace kelmora::app {

/// The language that the client speaks to somebody who reads these, the best
/// first: "de", or "pt_BR". Empty for English, in which the texts are written,
/// and where there is no translation into any of them.
[[nodiscard]] QString languageFor(const QStringList& wanted);

/// As long as it lives, the client and the toolkit speak the language. Needs an
/// application object, which must outlive it.
class Translations {
 public:
  explicit Translations(const QString& language);
  Q_DISABLE_COPY_MOVE(Translations)
  ~Translations() = default;

 private:
  QTranslator toolkit_;
  QTranslator client_;
};

}  // namespace kelmora::app

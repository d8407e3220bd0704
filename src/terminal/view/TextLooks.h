#pragma once

#include <QHash>
#include <QTextCharFormat>
#include <QTextDocument>

#include "terminal/core/StyledText.h"

namespace kelmora::terminal {

/// The character formats of looks. Each is made once by the toolkit's own
/// importer and then kept: of what it is made is the importer's to say.
class TextLooks {
 public:
  /// The style sheet is that of the document which the formats are for.
  explicit TextLooks(const QString& styleSheet);

  [[nodiscard]] QTextCharFormat formatOf(const StyledText::Run& run);

 private:
  using Formats = QHash<TextLook, QTextCharFormat>;

  [[nodiscard]] const QTextCharFormat& kept(Formats& formats, const TextLook& look,
                                            const QString& body);

  QTextDocument sample_;
  Formats formats_;
  Formats linkFormats_;
};

}  // namespace kelmora::terminal

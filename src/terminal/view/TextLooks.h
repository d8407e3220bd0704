#pragma once

#include <QHash>
#include <QTextCharFormat>
#include <QTextDocument>

#include "terminal/core/StyledText.h"

namespace kelmora::terminal {

/// Finds the character format for each look. The toolkit's HTML importer makes it,
/// so that text shown without HTML has exactly the formats that the importer would
/// give it. Each format is made once and then kept.
class TextLooks {
 public:
  /// The style sheet of the document that the formats are for.
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

#pragma once

#include <QString>
#include <QStringView>
#include <optional>
#include <vector>

#include "terminal/view/TextLooks.h"

/// Text as it goes into a document, in pieces of one format each.
struct DirectText {
  struct Run {
    qsizetype end;  ///< where in the text the next one begins
    TextLook look;
    /// The target of a link, empty for other text.
    QString target = {};
  };

  QString text;
  std::vector<Run> runs;

  /// Reads HTML of the kind that the client itself makes of the game's text:
  /// colour spans that are never closed, line breaks, web links and the
  /// entities of blanks and angle brackets. The text and its pieces are those
  /// that the toolkit's importer would make. Nothing when there is anything
  /// else in it: that is for the importer.
  [[nodiscard]] static std::optional<DirectText> read(QStringView html);
};

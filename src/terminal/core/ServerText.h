#pragma once

#include <QByteArray>
#include <QString>

#include "terminal/core/PipelineState.h"

/// One read on its way to the pane. Most of a flood is never seen, so the costly
/// steps wait until it is: making HTML of it, decoding, linking and resolving
/// the placeholders.
struct ServerText {
  enum class Tags { OwnOnly, FromServer };

  QByteArray bytes = {};
  /// As it was when they came.
  PipelineState state = {};
  PipelineOptions options = {};
  /// The same text as plain lines, as the triggers see it.
  QByteArray plain = {};
  /// Whether the server may have written tags; otherwise all are the pipeline's.
  Tags tags = Tags::OwnOnly;

  /// The HTML for the pane. Tags of the server are still as it wrote them.
  [[nodiscard]] QString decoded() const;
};

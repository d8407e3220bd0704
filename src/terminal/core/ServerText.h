#pragma once

#include <QByteArray>
#include <QString>

/// What the pipeline made of one read, on its way to the pane. Most of a flood
/// is never seen, so the costly steps wait until it is: decoding, linking and
/// resolving the placeholders.
struct ServerText {
  enum class Links { Hidden, Shown };
  enum class Tags { OwnOnly, FromServer };

  /// UTF-8 with the placeholders of blanks and angle brackets.
  QByteArray html = {};
  /// The same text as plain lines, as the triggers see it.
  QByteArray plain = {};
  Links links = Links::Hidden;
  /// Whether the server may have written tags; otherwise all are the pipeline's.
  Tags tags = Tags::OwnOnly;

  /// The HTML for the pane. Tags of the server are still as it wrote them.
  [[nodiscard]] QString decoded() const;
};

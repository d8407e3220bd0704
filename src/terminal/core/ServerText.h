#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

#include "terminal/core/PipelineState.h"

/// One read on its way to the pane. Most of a flood is never seen, so the costly
/// steps wait until it is: making HTML of it, decoding, linking and resolving
/// the placeholders.
struct ServerText {
  enum class Tags { OwnOnly, FromServer };
  /// A part of a long read has about so many bytes: keys come between the turns
  /// of two.
  static constexpr qsizetype partLength = qsizetype{8} * 1024;

  /// A place behind a line end from which what follows may be shown by itself.
  struct Division {
    qsizetype bytes;
    qsizetype plain;
    PipelineState state;
    /// The spans that are open there.
    QByteArray spans;
  };

  QByteArray bytes = {};
  /// As it was when they came.
  PipelineState state = {};
  PipelineOptions options = {};
  /// The same text as plain lines, as the triggers see it.
  QByteArray plain = {};
  /// Whether the server may have written tags; otherwise all are the pipeline's.
  Tags tags = Tags::OwnOnly;
  /// At least partLength from one to the next; none where tags may go over them,
  /// or where a colour may be anything.
  std::vector<Division> divisions = {};
  /// For what follows a division: the spans that are open where it begins.
  std::optional<QByteArray> openSpans = {};

  /// The HTML for the pane. Tags of the server are still as it wrote them.
  [[nodiscard]] QString decoded() const;
  /// What lies between the divisions, as texts of their own that show the same.
  [[nodiscard]] std::vector<ServerText> divided() const;
};

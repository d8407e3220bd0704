#pragma once

#include <QTextCursor>

#include "terminal/view/PaneQueue.h"
#include "terminal/view/TextLooks.h"

class QTextEdit;

/// Puts waiting texts at the end of a pane's document, all in one change, so
/// that the toolkit lays them out together.
class PaneWriter {
 public:
  /// Lengths of a paragraph in characters: from where its next line break ends
  /// it, and where it ends at the latest.
  struct Lengths {
    qsizetype longParagraph;
    qsizetype longestParagraph;
  };

  /// Both outlive the writer, whose end is the end of the change.
  PaneWriter(QTextEdit& pane, TextLooks& looks, Lengths lengths);
  ~PaneWriter();
  Q_DISABLE_COPY_MOVE(PaneWriter)

  void write(const PaneText& text);
  /// Characters so far, about.
  [[nodiscard]] qsizetype written() const { return written_; }

 private:
  void writeOne(const ServerText& text);
  void writeOne(const SafeHtml& text);
  void writeOne(const StatusLine& text);
  void writeOne(const PlainText& text);
  /// Answers false when it is for the toolkit's importer.
  [[nodiscard]] bool writeDirectly(const QString& html);
  void divideLastParagraph();

  QTextEdit& pane_;
  TextLooks& looks_;
  Lengths lengths_;
  QTextCursor end_;
  qsizetype written_ = 0;
};

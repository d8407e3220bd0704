#pragma once

#include <QTextCursor>

#include "terminal/view/PaneQueue.h"
#include "terminal/view/TextLooks.h"

class QTextEdit;

/// Puts waiting texts at the end of a pane's document, all in one change, so
/// that the toolkit lays them out together.
class PaneWriter {
 public:
  /// Both outlive the writer, whose end is the end of the change.
  PaneWriter(QTextEdit& pane, TextLooks& looks, ParagraphEnds::Lengths lengths);
  ~PaneWriter();
  Q_DISABLE_COPY_MOVE(PaneWriter)

  void write(const PaneText& text);
  /// Characters so far, about.
  [[nodiscard]] qsizetype written() const { return written_; }

 private:
  void writeOne(const StyledText& text);
  void writeOne(const SafeHtml& text);
  void writeOne(const StatusLine& text);
  void writeOne(const PlainText& text);
  void divideLastParagraph();

  QTextEdit& pane_;
  TextLooks& looks_;
  ParagraphEnds::Lengths lengths_;
  QTextCursor end_;
  qsizetype written_ = 0;
};

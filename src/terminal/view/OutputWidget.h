#pragma once

#include <QTextBrowser>

class InputWidget;

/// The scrolling pane, and the one door to it: server text, status lines, the
/// echo of sent lines and the client's own messages all enter here, each at
/// the end of the document and in the order of the calls.
class OutputWidget : public QTextBrowser {
  Q_OBJECT

 public:
  /// Older paragraphs are dropped from the top beyond this many.
  static constexpr int maximumParagraphs = 750;
  /// Characters after which a paragraph is continued in a new one at its next
  /// line break. Server text has line breaks only, so without this a session
  /// were one paragraph, laid out whole at each read and never dropped.
  static constexpr qsizetype longParagraph = 16384;
  /// Characters after which it is continued even where no line breaks.
  static constexpr qsizetype longestParagraph = 65536;

  /// The input bar outlives the pane; typing is a Tab away from reading.
  OutputWidget(InputWidget& inputBar, QWidget* parent);

  /// Continues the last paragraph with what the pipeline made of one read.
  /// HTML that safeMarkup() has not seen can take the toolkit hours.
  void insertServerHtml(const QString& html);
  /// A paragraph of its own.
  void appendStatusLine(const QString& html);
  /// Yellow on black; the text is shown with its own line end.
  void echoSentText(const QString& text);
  /// One line in a colour on black; an invalid colour is drawn white.
  void printText(const QString& text, const QColor& colour);
  /// "## " and the text, yellow on red.
  void printError(const QString& text);
  /// "++ " and the text, white on blue.
  void printInfo(const QString& text);

  /// Nothing that the server names is ever loaded: no file, no picture, no
  /// style sheet.
  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  /// The newest line stays in sight where it was.
  void resizeEvent(QResizeEvent* event) override;
  /// A link never replaces what the pane shows.
  void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;

 private:
  void divideLastParagraph();
  void insertPlain(const QString& text, const QColor& colour, const QColor& background);

  InputWidget& inputBar_;
};

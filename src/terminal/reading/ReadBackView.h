#pragma once

#include <QTextBrowser>

#include "terminal/reading/PaneSight.h"

namespace kelmora::terminal {

/// A second view of a pane's text, over the upper part of the pane, for whoever
/// reads back while the game goes on: it stays where the reader is, and the newest
/// lines come in below it. It shows the pane's own document and leaves the width of
/// the text, its font and its layout to the pane.
class ReadBackView : public QTextBrowser {
  Q_OBJECT

 public:
  /// A hidden child of the pane, which outlives it.
  ReadBackView(QTextBrowser& pane, PaneSight& paneSight);
  ~ReadBackView() override;

  /// Shows the document from the line on that is at the top of the pane.
  void takePlaceOfPane();
  /// To be called with every document that takes the place of the pane's, while the
  /// old one is still there. What is selected stays selected.
  void showDocument(QTextDocument& document);
  /// Hides it, and deletes it when the events on their way have passed.
  void retire();
  /// Covers so much of the pane, in pixels from its top.
  void cover(int height);
  /// Brings a place in the document, counted in characters, into sight.
  void goTo(int position) { sight_.goTo(position); }
  /// Whether the pane, at its end, shows all that this view shows.
  [[nodiscard]] bool isAtEnd() const;

 Q_SIGNALS:
  /// The reader has scrolled down to where the pane begins.
  void endReached();
  void menuWanted(const QContextMenuEvent& event);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;

 private:
  /// The bar's range, as the toolkit has it.
  void adjustBar();

  QTextBrowser& pane_;
  PaneSight& paneSight_;
  PaneSight sight_;
};

}  // namespace kelmora::terminal

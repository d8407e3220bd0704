#pragma once

#include <QObject>

class QTextBrowser;
class QTextDocument;
class QWidget;

namespace kelmora::terminal {

class PaneSight;
class ReadBackView;
class SplitHandle;

/// Reading back while the game goes on. A pane moves to its end with each new text;
/// if its reader has scrolled up before, a second view opens over its upper part and
/// stays at the reader's place. Then wheel and keys scroll the view, also over the pane,
/// which stays at its end. The view closes with Escape, and when the reader has come
/// down to where the pane begins. While it is closed there is no second view.
class ReadBack : public QObject {
  Q_OBJECT

 public:
  /// The share of the pane's height that the view covers until it is dragged.
  static constexpr double usualShare = 0.65;

  /// Pane and sight outlive this.
  ReadBack(QTextBrowser& pane, PaneSight& sight);
  ~ReadBack() override;

  /// To be called before new text moves the pane to its end.
  void beforeText();
  /// To be called when the pane's size or font has changed.
  void layOut();
  /// To be called with a document that is about to take the place of the pane's.
  void beforeDocument(QTextDocument& document);
  void close();
  /// Brings a place in the document, counted in characters, into the reader's sight.
  /// In the pane that is as if the reader had scrolled there.
  void goTo(int position);

  [[nodiscard]] bool isOpen() const { return view_ != nullptr; }
  /// Null while it is closed.
  [[nodiscard]] ReadBackView* view() const { return view_; }
  /// The border below the view. Null while it is closed.
  [[nodiscard]] QWidget* border() const;
  /// The view's part of the pane's height, from 0 to 1. It is kept for the session.
  /// With less than two lines for it, the view never opens.
  [[nodiscard]] double share() const { return share_; }
  void setShare(double share);
  /// Whether the share leaves room for the view.
  [[nodiscard]] bool isWanted() const;

 Q_SIGNALS:
  void opened();
  void closed();
  /// The view is now above all that the pane shows.
  void raised();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool canOpen() const;
  void open();
  /// Whether the event was for the pane but has scrolled the view.
  bool takesOver(QObject* watched, QEvent* event);
  /// Above the pane's bar, too.
  void raise();
  /// Pixels of the pane's height for the view.
  [[nodiscard]] int coveredHeight() const;
  [[nodiscard]] int leastHeight() const;

  QTextBrowser& pane_;
  PaneSight& sight_;
  double share_ = usualShare;
  /// Whether the reader, and not the program, has moved the pane since it was last
  /// at its end.
  bool hasScrolled_ = false;
  ReadBackView* view_ = nullptr;   ///< child of the pane
  SplitHandle* handle_ = nullptr;  ///< child of the pane
};

}  // namespace kelmora::terminal

#pragma once

#include <QFrame>
#include <QTimer>
#include <memory>

#include "terminal/reading/PaneFind.h"
#include "terminal/speech/Announcer.h"

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QTextBrowser;
class QToolButton;

namespace kelmora::terminal {

/// The small bar at the pane's upper edge in which the reader says what to find.
/// While it lives, the hits are marked. A screen reader speaks the line of a hit that
/// the reader has come to.
class FindBar : public QFrame {
  Q_OBJECT

 public:
  /// A child of the pane, shown at once. Pane and readBack outlive it.
  FindBar(QTextBrowser& pane, ReadBack& readBack);

  /// Takes the keyboard. Words are put in, unless there are none.
  void begin(const QString& words);
  /// Hides it and takes the marks away, for as long as it still lives.
  void end();
  /// Selects the hit to which the reader has come; selects nothing without one.
  [[nodiscard]] const QTextCursor& currentHit() const { return find_->currentHit(); }
  /// The last one that the Tab key meets.
  [[nodiscard]] QWidget* lastControl() const;
  /// To be called with a document that is about to take the place of the pane's.
  void beforeDocument(QTextDocument& document) { find_->takeDocument(document); }
  /// To be called when the pane's size has changed.
  void layOut();

 Q_SIGNALS:
  /// The reader is done with it.
  void dismissed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QToolButton& addButton(const QString& text, const QString& name, const QString& toolTip);
  QToolButton& addOption(const QString& text, const QString& name);
  /// Beside the words, or below them where there is not so much room, in pixels.
  void placeCount(int room);
  void goToOlder();
  void goToNewer();
  void look();
  void tellCount();
  void speakLater();
  void speak();

  QTextBrowser& pane_;
  std::unique_ptr<PaneFind> find_;
  Announcer announcer_;
  QTimer speaks_;
  bool isNoExpression_ = false;
  QHBoxLayout* row_;
  QLineEdit* words_;
  QLabel* count_;
  QToolButton* matchCase_ = nullptr;
  QToolButton* wholeWords_ = nullptr;
  QToolButton* expression_ = nullptr;
};

}  // namespace kelmora::terminal

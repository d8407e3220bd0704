#pragma once

#include <QLineEdit>

namespace kelmora::terminal {
class InputHost;
}

/// The one-line editor under the output pane. It decides what a key is for; its
/// host does the work.
class InputWidget : public QLineEdit {
  Q_OBJECT

 public:
  /// The host outlives the bar.
  InputWidget(kelmora::terminal::InputHost& host, QWidget* parent);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  bool browsesOrMoves(QKeyEvent* event);
  bool answersControl(int key);

  kelmora::terminal::InputHost& host_;
};

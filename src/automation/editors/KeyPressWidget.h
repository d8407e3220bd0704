#pragma once

#include <QDialog>

class KeyPressInput;

/// Asks for the key of a new macro.
class KeyPressWidget : public QDialog {
  Q_OBJECT

 public:
  explicit KeyPressWidget(QWidget* parent);

  /// Shows the dialog until it is closed. The key code without modifiers, or
  /// KeyPressInput::noKey when it was closed without a key or not with its
  /// button.
  [[nodiscard]] qint32 captureKey();

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void submitKey();

 private:
  KeyPressInput* input_;  // child of the dialog
  qint32 capturedKey_;
};

#pragma once

#include <QDialog>

class KeyPressInput;

/// Asks the player for the key of a new macro.
class KeyPressWidget : public QDialog {
  Q_OBJECT

 public:
  explicit KeyPressWidget(QWidget* parent);

  /// Shows the dialog and waits until it is closed. Returns the code of the key,
  /// without modifiers. KeyPressInput::noKey where no key that can be bound was
  /// pressed last, and where the dialog was closed by other means than its button.
  [[nodiscard]] qint32 captureKey();

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  void submitKey();

 private:
  KeyPressInput* input_;  // child of the dialog
  qint32 capturedKey_;
};

#pragma once

#include <QLineEdit>

/// Shows the name of the last key pressed in it, and nothing else: no key
/// types, moves the focus or reaches the dialog around it.
class KeyPressInput : public QLineEdit {
  Q_OBJECT

 public:
  static constexpr qint32 noKey = -1;

  explicit KeyPressInput(QWidget* parent);

  /// The key code without modifiers of the last key pressed; noKey before the
  /// first one and where that key cannot be bound.
  [[nodiscard]] qint32 capturedKey() const { return capturedKey_; }
  /// Empties the field and forgets the key.
  void reset();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  qint32 capturedKey_ = noKey;
};

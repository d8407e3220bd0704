#pragma once

#include <QLineEdit>

/// Shows the name of the key that was pressed last. A key has no other effect here:
/// it types nothing, does not move the focus and does not reach the dialog.
class KeyPressInput : public QLineEdit {
  Q_OBJECT

 public:
  static constexpr qint32 noKey = -1;

  explicit KeyPressInput(QWidget* parent);

  /// The code of the key that was pressed last, without modifiers. noKey where none
  /// was pressed yet, and where the last one cannot be bound.
  [[nodiscard]] qint32 capturedKey() const { return capturedKey_; }
  /// Empties the field and forgets the key.
  void reset();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  qint32 capturedKey_ = noKey;
};

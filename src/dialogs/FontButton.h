#pragma once

#include <QCoreApplication>
#include <QPushButton>

namespace kelmora::dialogs {

/// A button that shows a font by its label, and holds it as its own font. A font
/// that is too large or too small for a label is drawn in the nearest readable
/// size, so that the dialog keeps its shape; the tool tip tells the true size.
class FontButton : public QPushButton {
  Q_DECLARE_TR_FUNCTIONS(FontButton)

 public:
  using QPushButton::QPushButton;

  void setShownFont(const QFont& font);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kelmora::dialogs

#pragma once

#include <QPushButton>

namespace kelmora::dialogs {

/// Black or white, whichever is easier to read on the background.
[[nodiscard]] QColor readableOn(const QColor& background);

/// A button that shows a colour, and holds it as the Button role of its palette.
class ColourButton : public QPushButton {
 public:
  using QPushButton::QPushButton;

  [[nodiscard]] QColor colour() const;
  void setColour(const QColor& colour);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kelmora::dialogs

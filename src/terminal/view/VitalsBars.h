#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <array>

#include "terminal/core/Vitals.h"

class QProgressBar;
class QWidget;

namespace kelmora::terminal {

/// The three bars for hit, spell and endurance points. They stand at fixed
/// places on the toolbar, drawn for the default window width. A prompt is shown
/// at once; of many in one frame the last is.
class VitalsBars {
 public:
  /// The bars become children of the toolbar and go with it.
  explicit VitalsBars(QWidget& toolbar);

  /// Percentages; a bar keeps its value where none is given or where it lies
  /// outside 0 to 100.
  void show(const VitalPercentages& percentages);

 private:
  void apply();

  VitalPercentages newest_;
  QTimer endOfFrame_;
  QElapsedTimer sinceApplied_;
  std::array<QProgressBar*, 3> bars_;
};

}  // namespace kelmora::terminal

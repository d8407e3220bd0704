#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <array>

#include "terminal/core/Vitals.h"

class QProgressBar;
class QWidget;

namespace kelmora::terminal {

/// The three bars for hit, spell and endurance points. They are at fixed places on
/// the toolbar, which suit the default width of the window. A prompt is shown at
/// once; of several within one frame, the first and the last are.
class VitalsBars {
 public:
  /// The bars become children of the toolbar, which destroys them.
  explicit VitalsBars(QWidget& toolbar);

  /// A bar keeps its value if its percentage is missing or not between 0 and 100.
  void show(const VitalPercentages& percentages);

 private:
  void apply();

  VitalPercentages newest_;
  QTimer endOfFrame_;
  QElapsedTimer sinceApplied_;
  std::array<QProgressBar*, 3> bars_;
};

}  // namespace kelmora::terminal

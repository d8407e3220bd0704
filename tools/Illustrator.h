#pragma once

#include <QStringList>

namespace kelmora::tools {

class GuidePage;
class Studio;
struct GuideStep;

/// Follows a page of the guide and makes the pictures that it shows, each where the
/// page shows it. A picture of a dialog is made with the dialog open.
class Illustrator {
 public:
  explicit Illustrator(Studio& studio) : studio_(studio) {}

  void follow(const GuidePage& page);
  [[nodiscard]] static QStringList pictures(const GuidePage& page);

 private:
  void take(const GuideStep& step);
  void press(const QString& key);
  void keepPicture(const QString& name);
  void seek(const GuideStep& step);
  void turnWheelUp();
  void makeTrigger(const GuideStep& step);

  Studio& studio_;
  qsizetype before_ = 0;  ///< how much the pane held before the last step
};

}  // namespace kelmora::tools

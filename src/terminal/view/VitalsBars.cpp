#include "terminal/view/VitalsBars.h"

#include <QCoreApplication>
#include <QProgressBar>

namespace {

struct BarRow {
  int top;
  const char* styleSheet;
  const char* accessibleName;
};

constexpr int left = 670;
constexpr int width = 118;
constexpr int height = 16;

constexpr std::array<BarRow, 3> barRows{{
    {10, "::chunk { background-color: red }", QT_TRANSLATE_NOOP("VitalsBars", "Hit points")},
    {30, "::chunk { background-color: blue }", QT_TRANSLATE_NOOP("VitalsBars", "Spell points")},
    {50, "::chunk { background-color: green }",
     QT_TRANSLATE_NOOP("VitalsBars", "Endurance points")},
}};

QProgressBar* makeBar(QWidget& toolbar, const BarRow& row) {
  auto* bar = new QProgressBar(&toolbar);
  // All three share one name, as style sheets of players expect.
  bar->setObjectName(QStringLiteral("progHP"));
  bar->setStyleSheet(QString::fromLatin1(row.styleSheet));
  bar->setGeometry(left, row.top, width, height);
  bar->setTextVisible(false);
  bar->setMaximum(100);
  bar->setValue(100);
  bar->setAccessibleName(QCoreApplication::translate("VitalsBars", row.accessibleName));
  bar->setToolTip(bar->accessibleName());
  return bar;
}

}  // namespace

VitalsBars::VitalsBars(QWidget& toolbar)
    : bars_{makeBar(toolbar, barRows[0]), makeBar(toolbar, barRows[1]),
            makeBar(toolbar, barRows[2])} {}

void VitalsBars::show(const VitalPercentages& percentages) {
  for (std::size_t i = 0; i < bars_.size(); ++i) {
    if (!percentages.at(i) || bars_.at(i)->value() == *percentages.at(i))
      continue;
    // A bar paints itself at once when its value changes; with a prompt in
    // every other line of a flood that is most of the work. So it only notes
    // that it has to.
    bars_.at(i)->setUpdatesEnabled(false);
    bars_.at(i)->setValue(*percentages.at(i));
    bars_.at(i)->setUpdatesEnabled(true);
  }
}

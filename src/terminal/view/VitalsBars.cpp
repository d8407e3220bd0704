#include "terminal/view/VitalsBars.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QProgressBar>

#include "terminal/view/PaneTurns.h"

namespace kelmora::terminal {

namespace {

constexpr int full = 100;

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
  // Players' style sheets select all three bars by this one name.
  bar->setObjectName(QStringLiteral("progHP"));
  bar->setStyleSheet(QString::fromLatin1(row.styleSheet));
  bar->setGeometry(left, row.top, width, height);
  bar->setTextVisible(false);
  bar->setMaximum(full);
  bar->setValue(full);
  bar->setAccessibleName(QCoreApplication::translate("VitalsBars", row.accessibleName));
  bar->setToolTip(bar->accessibleName());
  return bar;
}

/// As long as it lives, screen readers are not told of changes. Some speak each one
/// of a bar, which with a bar for each kind of points and a prompt every second is
/// all that a player would hear.
class Untold {
 public:
  Untold() : before_(QAccessible::installUpdateHandler([](QAccessibleEvent* /*event*/) {})) {}
  ~Untold() { QAccessible::installUpdateHandler(before_); }
  Q_DISABLE_COPY_MOVE(Untold)

 private:
  QAccessible::UpdateHandler before_;
};

}  // namespace

VitalsBars::VitalsBars(QWidget& toolbar)
    : bars_{makeBar(toolbar, barRows[0]), makeBar(toolbar, barRows[1]),
            makeBar(toolbar, barRows[2])} {
  endOfFrame_.setSingleShot(true);
  QObject::connect(&endOfFrame_, &QTimer::timeout, &endOfFrame_, [this] { apply(); });
}

void VitalsBars::show(const VitalPercentages& percentages) {
  for (std::size_t i = 0; i < bars_.size(); ++i)
    if (const auto value = percentages.at(i); value && *value >= 0 && *value <= full)
      newest_.at(i) = value;
  // A bar is laid out and painted each time its value changes. In a flood with a
  // prompt in every other line that would be most of the work.
  if (endOfFrame_.isActive())
    return;
  const qint64 idle = sinceApplied_.isValid() ? sinceApplied_.elapsed() : frameLength;
  if (idle >= frameLength)
    apply();
  else
    endOfFrame_.start(static_cast<int>(frameLength - idle));
}

void VitalsBars::apply() {
  const Untold untold;
  sinceApplied_.start();
  for (std::size_t i = 0; i < bars_.size(); ++i)
    if (newest_.at(i))
      bars_.at(i)->setValue(*newest_.at(i));
}

}  // namespace kelmora::terminal

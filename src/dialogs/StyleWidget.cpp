#include "dialogs/StyleWidget.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QStyleFactory>

#include "dialogs/DialogButtons.h"
#include "dialogs/SettingsHost.h"
#include "settings/ClientSettings.h"

using namespace kelmora;
using namespace kelmora::dialogs;

namespace {

/// A length in pixels. The mask takes two digits from 1 to 9 and no zero, so that
/// 20 and 40 cannot be typed and are shown as 2 and 4: a quirk of this client.
class LengthEdit : public QLineEdit {
 public:
  LengthEdit(const QString& name, const QString& toolTip, QWidget* parent) : QLineEdit(parent) {
    setInputMask(QStringLiteral("DD"));
    setAccessibleName(name);
    setToolTip(toolTip);
  }

 protected:
  // A mask leaves the cursor behind the last digit, where no more can be typed.
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    const bool byKeyboard = event->reason() == Qt::TabFocusReason ||
                            event->reason() == Qt::BacktabFocusReason ||
                            event->reason() == Qt::ShortcutFocusReason;
    if (byKeyboard)
      selectAll();
  }
};

}  // namespace

StyleWidget::StyleWidget(QWidget& mainWindow, SettingsHost& host,
                         settings::ClientSettings& settings)
    : QDialog(&mainWindow),
      host_(host),
      settings_(settings),
      iconWidth_(new LengthEdit(tr("Icon width"), tr("Icon width in pixels"), this)),
      iconHeight_(new LengthEdit(tr("Icon height"), tr("Icon height in pixels"), this)),
      style_(new QComboBox(this)) {
  setWindowTitle(tr("Interface Settings"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/style.png")));
  setModal(true);
  for (const QString& name : QStyleFactory::keys())
    style_->addItem(name, name);
  auto* grid = new QGridLayout(this);
  const auto addLabel = [&](int row, const QString& text, QWidget* field) {
    auto* label = new QLabel(text, this);
    label->setBuddy(field);
    grid->addWidget(label, row, 0);
  };
  addLabel(0, tr("Use the following icon dimensions:"), iconWidth_);
  grid->addWidget(iconWidth_, 0, 1);
  grid->addWidget(iconHeight_, 0, 2);
  addLabel(1, tr("Use the following interface style:"), style_);
  grid->addWidget(style_, 1, 1);
  addApplyAndCancel(*this, *grid, tr("Apply"), tr("Cancel"));
  grid->setRowStretch(grid->rowCount(), 1);  // takes the height that a larger window has over
}

void StyleWidget::showDialog() {
  show();
  // A stored name that the list does not have leaves it without a chosen entry.
  style_->setCurrentIndex(style_->findData(settings_.interfaceStyle));
  iconWidth_->setText(QString::number(settings_.iconSize.width()));
  iconHeight_->setText(QString::number(settings_.iconSize.height()));
  iconWidth_->setFocus(Qt::OtherFocusReason);
  iconWidth_->selectAll();
}

void StyleWidget::applySettings() {
  settings_.interfaceStyle = style_->currentData().toString();
  settings_.iconSize = {iconWidth_->text().toInt(), iconHeight_->text().toInt()};
  host_.applySettings(settings::Occasion::InterfaceApplied);
  hide();
}

void StyleWidget::cancelDialog() {
  hide();
}

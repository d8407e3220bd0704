#include "dialogs/StyleWidget.h"

#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyleFactory>

#include "dialogs/SettingsHost.h"
#include "settings/ClientSettings.h"

using namespace kelmora;
using namespace kelmora::dialogs;

namespace {

/// A length of at most two digits. The mask takes the digits from 1 to 9 only,
/// so 20 and 40 cannot be entered, and are shown as 2 and 4: a quirk of this
/// client.
class LengthEdit : public QLineEdit {
 public:
  explicit LengthEdit(QWidget* parent) : QLineEdit(parent) { setInputMask(QStringLiteral("DD")); }

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
      iconWidth_(new LengthEdit(this)),
      iconHeight_(new LengthEdit(this)),
      style_(new QComboBox(this)) {
  setWindowTitle(tr("Interface Settings"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/style.png")));
  setModal(true);
  iconWidth_->setAccessibleName(tr("Icon width"));
  iconWidth_->setToolTip(tr("Icon width in pixels"));
  iconHeight_->setAccessibleName(tr("Icon height"));
  iconHeight_->setToolTip(tr("Icon height in pixels"));
  style_->addItems(QStyleFactory::keys());

  auto* iconLabel = new QLabel(tr("Use the following icon dimensions:"), this);
  iconLabel->setBuddy(iconWidth_);
  auto* styleLabel = new QLabel(tr("Use the following interface style:"), this);
  styleLabel->setBuddy(style_);
  auto* apply = new QPushButton(tr("Apply"), this);
  apply->setDefault(true);
  auto* cancel = new QPushButton(tr("Cancel"), this);
  connect(apply, &QPushButton::clicked, this, &StyleWidget::applySettings);
  connect(cancel, &QPushButton::clicked, this, &StyleWidget::cancelDialog);

  auto* grid = new QGridLayout(this);
  grid->addWidget(iconLabel, 0, 0);
  grid->addWidget(iconWidth_, 0, 1);
  grid->addWidget(iconHeight_, 0, 2);
  grid->addWidget(styleLabel, 1, 0);
  grid->addWidget(style_, 1, 1);
  grid->addWidget(apply, 2, 0, Qt::AlignLeft);
  grid->addWidget(cancel, 2, 2, Qt::AlignRight);
  grid->setRowStretch(3, 1);  // what a larger window has over
}

void StyleWidget::showDialog() {
  show();
  style_->setCurrentIndex(
      style_->findText(settings_.interfaceStyle, Qt::MatchExactly | Qt::MatchCaseSensitive));
  iconWidth_->setText(QString::number(settings_.iconSize.width()));
  iconHeight_->setText(QString::number(settings_.iconSize.height()));
  iconWidth_->setFocus(Qt::OtherFocusReason);
  iconWidth_->selectAll();
}

void StyleWidget::applySettings() {
  settings_.interfaceStyle = style_->currentText();
  settings_.iconSize = {iconWidth_->text().toInt(), iconHeight_->text().toInt()};
  host_.storeSettings();
  // A name that the toolkit does not know changes nothing, nor does none.
  QApplication::setStyle(settings_.interfaceStyle);
  host_.setToolbarIconSize(settings_.iconSize);
  hide();
}

void StyleWidget::cancelDialog() {
  hide();
}

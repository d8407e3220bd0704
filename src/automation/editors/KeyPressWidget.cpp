#include "automation/editors/KeyPressWidget.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "automation/editors/KeyPressInput.h"

KeyPressWidget::KeyPressWidget(QWidget* parent)
    : QDialog(parent), input_(new KeyPressInput(this)), capturedKey_(KeyPressInput::noKey) {
  setModal(true);
  setWindowTitle(tr("Add Macro"));

  auto* label = new QLabel(tr("Hit a key:"), this);
  label->setBuddy(input_);
  input_->setAccessibleName(tr("Key"));
  input_->setToolTip(tr("Shows the key that was pressed last; that one is bound"));
  input_->setMinimumWidth(220);
  auto* okay = new QPushButton(tr("Okay"), this);
  // Enter is captured like any other key, so the button must not look as if Enter
  // pressed it.
  okay->setAutoDefault(false);
  connect(okay, &QPushButton::clicked, this, &KeyPressWidget::submitKey);

  auto* column = new QGridLayout(this);
  column->addWidget(label, 0, 0);
  column->addWidget(input_, 1, 0);
  column->addWidget(okay, 2, 0);
}

qint32 KeyPressWidget::captureKey() {
  input_->setFocus();
  input_->reset();
  capturedKey_ = KeyPressInput::noKey;
  exec();
  return capturedKey_;
}

void KeyPressWidget::submitKey() {
  capturedKey_ = input_->capturedKey();
  accept();
}

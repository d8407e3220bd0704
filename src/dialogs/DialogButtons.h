#pragma once

#include <QGridLayout>
#include <QPushButton>

namespace kelmora::dialogs {

/// Adds a row with the button Apply, which Enter presses, at the left edge of
/// the grid and the button Cancel at its right edge. The dialog gives their
/// texts, so that they are translated among its own.
template <typename Dialog>
void addApplyAndCancel(Dialog& dialog, QGridLayout& grid, const QString& applyText,
                       const QString& cancelText) {
  const int row = grid.rowCount();
  const int lastColumn = grid.columnCount() - 1;
  auto* apply = new QPushButton(applyText, &dialog);
  apply->setDefault(true);
  auto* cancel = new QPushButton(cancelText, &dialog);
  QObject::connect(apply, &QPushButton::clicked, &dialog, &Dialog::applySettings);
  QObject::connect(cancel, &QPushButton::clicked, &dialog, &Dialog::cancelDialog);
  grid.addWidget(apply, row, 0, Qt::AlignLeft);
  grid.addWidget(cancel, row, lastColumn, Qt::AlignRight);
}

}  // namespace kelmora::dialogs

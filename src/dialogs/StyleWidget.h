#pragma once

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace kelmora::dialogs {
class SettingsHost;
}

namespace kelmora::settings {
struct ClientSettings;
}

/// The interface settings: the widget style and the size of the toolbar's icons.
class StyleWidget : public QDialog {
  Q_OBJECT

 public:
  /// Makes the dialog a child of the window. Host and record must exist for as long
  /// as the dialog can be used.
  StyleWidget(QWidget& mainWindow, kelmora::dialogs::SettingsHost& host,
              kelmora::settings::ClientSettings& settings);

  /// Shows the dialog with the record's present values.
  void showDialog();

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  // The meta-object lists these slots and no others, in this order. Helpers are
  // plain functions.
  void applySettings();
  void cancelDialog();

 private:
  kelmora::dialogs::SettingsHost& host_;
  kelmora::settings::ClientSettings& settings_;

  QLineEdit* iconWidth_;
  QLineEdit* iconHeight_;
  QComboBox* style_;
};

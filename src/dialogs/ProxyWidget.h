#pragma once

#include <QDialog>
#include <vector>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLineEdit;

namespace kelmora::dialogs {
class SettingsHost;
}

namespace kelmora::settings {
struct ClientSettings;
}

/// The proxy settings.
class ProxyWidget : public QDialog {
  Q_OBJECT

 public:
  /// Makes the dialog a child of the window. Host and record must exist for as long
  /// as the dialog can be used.
  ProxyWidget(QWidget& mainWindow, kelmora::dialogs::SettingsHost& host,
              kelmora::settings::ClientSettings& settings);

  /// Shows the dialog with the record's present values.
  void showDialog();

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  // The meta-object lists these slots and no others, in this order. Helpers are
  // plain functions.
  void applySettings();
  void cancelDialog();

 private:
  void addField(QGridLayout& grid, const QString& label, QWidget* field);

  kelmora::dialogs::SettingsHost& host_;
  kelmora::settings::ClientSettings& settings_;

  QCheckBox* useProxy_;
  QComboBox* type_;
  std::vector<QLineEdit*> texts_;
};

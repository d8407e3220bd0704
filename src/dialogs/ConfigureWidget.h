#pragma once

#include <QDialog>
#include <array>
#include <cstddef>

#include "settings/ClientSettings.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLineEdit;
class QPushButton;
class StyleWidget;

namespace kelmora::dialogs {
class ColourButton;
class FontButton;
class SettingsHost;
}  // namespace kelmora::dialogs

/// The general settings: display and input options, the sixteen colours, the
/// fonts and the server. Its widgets hold what is edited until Apply.
class ConfigureWidget : public QDialog {
  Q_OBJECT

 public:
  static constexpr std::size_t optionCount = 7;

  /// A child of the window. Host and record must outlive the dialog's last use.
  ConfigureWidget(QWidget& mainWindow, kelmora::dialogs::SettingsHost& host,
                  kelmora::settings::ClientSettings& settings);

  /// Shows the dialog with the record's present values.
  void showDialog();

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  // The meta-object's slot table is these twenty-one, in this order; helpers
  // stay plain functions.
  void applySettings();
  void cancelDialog();
  void blackPressed();
  void redPressed();
  void greenPressed();
  void yellowPressed();
  void bluePressed();
  void magentaPressed();
  void cyanPressed();
  void whitePressed();
  void blackPressedB();
  void redPressedB();
  void greenPressedB();
  void yellowPressedB();
  void bluePressedB();
  void magentaPressedB();
  void cyanPressedB();
  void whitePressedB();
  void outFontPressed();
  void inFontPressed();
  void selectStyle();

 private:
  using ColourButtons = std::array<kelmora::dialogs::ColourButton*,
                                   std::tuple_size_v<kelmora::settings::ColourTexts>>;

  void addHeaders(QGridLayout& grid);
  void addOptions(QGridLayout& grid);
  void addColours(QGridLayout& grid);
  void addDisplay(QGridLayout& grid);
  void addButtons(QGridLayout& grid);
  void chooseColour(kelmora::dialogs::ColourButton& button);
  void chooseFont(kelmora::dialogs::FontButton& button);
  void applyFonts();
  void applyServer();
  void showServer();

  kelmora::dialogs::SettingsHost& host_;
  kelmora::settings::ClientSettings& settings_;
  StyleWidget& styleDialog_;  // a child of the window

  std::array<QCheckBox*, optionCount> optionBoxes_{};
  QLineEdit* splitString_ = nullptr;
  ColourButtons normalColours_{};
  ColourButtons boldColours_{};
  kelmora::dialogs::FontButton* outFont_ = nullptr;
  kelmora::dialogs::FontButton* inFont_ = nullptr;
  QComboBox* server_ = nullptr;
};

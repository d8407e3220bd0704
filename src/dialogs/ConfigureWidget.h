#pragma once

#include <QDialog>
#include <array>
#include <vector>

#include "settings/ClientSettings.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLineEdit;
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
  /// Makes the dialog a child of the window. Host and record must exist for as long
  /// as the dialog can be used.
  ConfigureWidget(QWidget& mainWindow, kelmora::dialogs::SettingsHost& host,
                  kelmora::settings::ClientSettings& settings);

  /// Shows the dialog with the record's present values.
  void showDialog();

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  // The meta-object lists these slots and no others, in this order. Helpers are
  // plain functions.
  void applySettings();
  void cancelDialog();
  void blackPressed() { chooseColour(normalColours_, Colour::Black); }
  void redPressed() { chooseColour(normalColours_, Colour::Red); }
  void greenPressed() { chooseColour(normalColours_, Colour::Green); }
  void yellowPressed() { chooseColour(normalColours_, Colour::Yellow); }
  void bluePressed() { chooseColour(normalColours_, Colour::Blue); }
  void magentaPressed() { chooseColour(normalColours_, Colour::Magenta); }
  void cyanPressed() { chooseColour(normalColours_, Colour::Cyan); }
  void whitePressed() { chooseColour(normalColours_, Colour::White); }
  void blackPressedB() { chooseColour(boldColours_, Colour::Black); }
  void redPressedB() { chooseColour(boldColours_, Colour::Red); }
  void greenPressedB() { chooseColour(boldColours_, Colour::Green); }
  void yellowPressedB() { chooseColour(boldColours_, Colour::Yellow); }
  void bluePressedB() { chooseColour(boldColours_, Colour::Blue); }
  void magentaPressedB() { chooseColour(boldColours_, Colour::Magenta); }
  void cyanPressedB() { chooseColour(boldColours_, Colour::Cyan); }
  void whitePressedB() { chooseColour(boldColours_, Colour::White); }
  void outFontPressed() { chooseFont(*outFont_); }
  void inFontPressed() { chooseFont(*inFont_); }
  void selectStyle();

 private:
  using Colour = kelmora::settings::Colour;
  using ColourButtons = std::array<kelmora::dialogs::ColourButton*,
                                   std::tuple_size_v<kelmora::settings::ColourTexts>>;

  void addHeaders(QGridLayout& grid);
  void addOptions(QGridLayout& grid);
  void addColours(QGridLayout& grid);
  void addDisplay(QGridLayout& grid);
  void addServers(QGridLayout& grid);
  void chooseColour(const ColourButtons& buttons, Colour colour);
  void chooseFont(kelmora::dialogs::FontButton& button);
  void showServer();
  void takeServer();

  kelmora::dialogs::SettingsHost& host_;
  kelmora::settings::ClientSettings& settings_;
  StyleWidget& styleDialog_;  // a child of the window

  std::vector<QCheckBox*> optionBoxes_;
  QLineEdit* splitString_ = nullptr;
  ColourButtons normalColours_{};
  ColourButtons boldColours_{};
  kelmora::dialogs::FontButton* outFont_ = nullptr;
  kelmora::dialogs::FontButton* inFont_ = nullptr;
  QComboBox* server_ = nullptr;
};

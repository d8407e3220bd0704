#include "dialogs/ConfigureWidget.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "dialogs/ColourButton.h"
#include "dialogs/FontButton.h"
#include "dialogs/SettingsHost.h"
#include "dialogs/StyleWidget.h"
#include "scan/Format.h"
#include "settings/ServerHosts.h"

using namespace kelmora;
using namespace kelmora::dialogs;

namespace {

using Slot = void (ConfigureWidget::*)();

struct OptionRow {
  const char* label;
  bool settings::ClientSettings::*option;
};

constexpr std::array<OptionRow, ConfigureWidget::optionCount> optionRows{{
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Display ANSI color"),
     &settings::ClientSettings::displayAnsiColor},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Enable local echo"),
     &settings::ClientSettings::displayLocalEcho},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Play beeps"), &settings::ClientSettings::playBeeps},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Parse html tags"), &settings::ClientSettings::parseHtml},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Flush input bar"),
     &settings::ClientSettings::flushInput},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Display clickable URLs"),
     &settings::ClientSettings::displayURLs},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Split input by following string:"),
     &settings::ClientSettings::splitInput},
}};

/// One of the eight colours; its place in the table is its index in the record.
struct ColourRow {
  const char* label;
  Slot normalPressed;
  Slot boldPressed;
};

using Dialog = ConfigureWidget;
constexpr std::array<ColourRow, std::tuple_size_v<settings::ColourTexts>> colourRows{{
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Black"), &Dialog::blackPressed, &Dialog::blackPressedB},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Red"), &Dialog::redPressed, &Dialog::redPressedB},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Green"), &Dialog::greenPressed, &Dialog::greenPressedB},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Yellow"), &Dialog::yellowPressed,
     &Dialog::yellowPressedB},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Blue"), &Dialog::bluePressed, &Dialog::bluePressedB},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Magenta"), &Dialog::magentaPressed,
     &Dialog::magentaPressedB},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Cyan"), &Dialog::cyanPressed, &Dialog::cyanPressedB},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "White"), &Dialog::whitePressed, &Dialog::whitePressedB},
}};
enum Colour : std::size_t { Black, Red, Green, Yellow, Blue, Magenta, Cyan, White };

constexpr std::array<int, 4> serverPorts{4023, 5000, 11995, 23};
constexpr int longestServerHint = 40;  // characters
constexpr int columnSpacing = 16;      // pixels

QString serverText(const QString& host, int port) {
  return host + QLatin1Char(' ') + QString::number(port);
}

}  // namespace

ConfigureWidget::ConfigureWidget(QWidget& mainWindow, SettingsHost& host,
                                 settings::ClientSettings& settings)
    : QDialog(&mainWindow),
      host_(host),
      settings_(settings),
      styleDialog_(*new StyleWidget(mainWindow, host, settings)) {
  setWindowTitle(tr("General Settings"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/configure.png")));
  setModal(true);
  auto* grid = new QGridLayout(this);
  grid->setHorizontalSpacing(columnSpacing);
  // Built column by column, which makes the order of the Tab key.
  addHeaders(*grid);
  addOptions(*grid);
  addColours(*grid);
  addDisplay(*grid);
  addButtons(*grid);
}

void ConfigureWidget::addHeaders(QGridLayout& grid) {
  int column = 0;
  for (const QString& text :
       {tr("Settings"), tr("Normal Colors"), tr("Bold Colors"), tr("Display")}) {
    auto* label = new QLabel(text, this);
    label->setAlignment(Qt::AlignCenter);
    grid.addWidget(label, 0, column++);
  }
}

void ConfigureWidget::addOptions(QGridLayout& grid) {
  int row = 1;
  for (std::size_t i = 0; i < optionRows.size(); ++i) {
    optionBoxes_[i] = new QCheckBox(tr(optionRows[i].label), this);
    grid.addWidget(optionBoxes_[i], row++, 0);
  }
  splitString_ = new QLineEdit(this);
  splitString_->setAccessibleName(tr("String to split the input by"));
  grid.addWidget(splitString_, row++, 0);
  grid.addWidget(new QLabel(this), row, 0);
  grid.setRowStretch(row, 1);  // what a larger window has over
}

void ConfigureWidget::addColours(QGridLayout& grid) {
  const auto addColumn = [&](int column, ColourButtons& buttons, Slot ColourRow::*pressed,
                             const QString& accessibleName) {
    for (std::size_t i = 0; i < colourRows.size(); ++i) {
      const QString label = tr(colourRows[i].label);
      buttons[i] = new ColourButton(label, this);
      buttons[i]->setAccessibleName(accessibleName.arg(label));
      connect(buttons[i], &QPushButton::clicked, this, colourRows[i].*pressed);
      grid.addWidget(buttons[i], static_cast<int>(i) + 1, column);
    }
  };
  addColumn(1, normalColours_, &ColourRow::normalPressed, tr("%1, normal color"));
  addColumn(2, boldColours_, &ColourRow::boldPressed, tr("%1, bold color"));
}

void ConfigureWidget::addDisplay(QGridLayout& grid) {
  outFont_ = new FontButton(tr("Output Window"), this);
  outFont_->setAccessibleName(tr("Font of the output window"));
  inFont_ = new FontButton(tr("Input Bar"), this);
  inFont_->setAccessibleName(tr("Font of the input bar"));
  auto* style =
      new QPushButton(QIcon(QStringLiteral(":/icons/style.png")), tr("Interface style"), this);
  auto* serverLabel = new QLabel(tr("Use the following server:"), this);
  serverLabel->setAlignment(Qt::AlignCenter);
  server_ = new QComboBox(this);
  serverLabel->setBuddy(server_);
  for (const QString& host :
       {settings::webDomain(), settings::serverHost(), settings::serverAddress()})
    for (const int port : serverPorts)
      server_->addItem(serverText(host, port));

  connect(outFont_, &QPushButton::clicked, this, &ConfigureWidget::outFontPressed);
  connect(inFont_, &QPushButton::clicked, this, &ConfigureWidget::inFontPressed);
  connect(style, &QPushButton::clicked, this, &ConfigureWidget::selectStyle);
  grid.addWidget(outFont_, 1, 3);
  grid.addWidget(inFont_, 2, 3);
  grid.addWidget(style, 3, 3);
  grid.addWidget(serverLabel, 5, 3);
  grid.addWidget(server_, 6, 3);
}

void ConfigureWidget::addButtons(QGridLayout& grid) {
  auto* apply = new QPushButton(tr("Apply"), this);
  apply->setDefault(true);
  auto* cancel = new QPushButton(tr("Cancel"), this);
  connect(apply, &QPushButton::clicked, this, &ConfigureWidget::applySettings);
  connect(cancel, &QPushButton::clicked, this, &ConfigureWidget::cancelDialog);
  grid.addWidget(apply, 10, 0, Qt::AlignLeft);
  grid.addWidget(cancel, 10, 3, Qt::AlignRight);
}

void ConfigureWidget::showDialog() {
  show();
  const auto showColours = [](const ColourButtons& buttons, const settings::ColourTexts& texts) {
    for (std::size_t i = 0; i < buttons.size(); ++i)
      buttons[i]->setColour(QColor::fromString(QLatin1String(texts[i].data())));
  };
  showColours(normalColours_, settings_.normalColour);
  showColours(boldColours_, settings_.boldColour);
  outFont_->setShownFont(settings_.outFont);
  inFont_->setShownFont(settings_.inFont);
  for (std::size_t i = 0; i < optionRows.size(); ++i)
    optionBoxes_[i]->setChecked(settings_.*optionRows[i].option);
  splitString_->setText(settings_.splitString);
  showServer();
  optionBoxes_.front()->setFocus(Qt::OtherFocusReason);
}

void ConfigureWidget::showServer() {
  const QString text = serverText(settings_.hostName, settings_.port);
  server_->setCurrentIndex(server_->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
  // Seen while no entry is current: the server that stays when none is chosen.
  server_->setPlaceholderText(
      text.size() <= longestServerHint ? text : text.first(longestServerHint - 1) + QChar(0x2026));
}

void ConfigureWidget::applySettings() {
  const auto storeColours = [](settings::ColourTexts& texts, const ColourButtons& buttons) {
    for (std::size_t i = 0; i < texts.size(); ++i)
      texts[i].assign(buttons[i]->colour().name().toLatin1());
  };
  storeColours(settings_.normalColour, normalColours_);
  storeColours(settings_.boldColour, boldColours_);
  host_.buildColourSpans();
  for (std::size_t i = 0; i < optionRows.size(); ++i)
    settings_.*optionRows[i].option = optionBoxes_[i]->isChecked();
  settings_.splitString = splitString_->text();
  applyFonts();
  applyServer();
  host_.storeSettings();
  hide();
}

void ConfigureWidget::applyFonts() {
  const QFont outFont = outFont_->font();
  const QFont inFont = inFont_->font();
  host_.setOutputFont(outFont);
  host_.setInputFont(inFont);
  settings_.outFont = outFont;
  settings_.inFont = inFont;
}

void ConfigureWidget::applyServer() {
  static const std::optional<scan::Format> format = scan::Format::compile("%s %d");
  const scan::Result server = format.value().scan(server_->currentText().toUtf8());
  // Without a current entry the stored server stays: it is none of the twelve.
  if (!server.complete())
    return;
  settings_.hostName = QString::fromUtf8(server.text(0));
  settings_.port = server.number(1);
}

void ConfigureWidget::cancelDialog() {
  hide();
}

void ConfigureWidget::chooseColour(ColourButton& button) {
  const QColor colour = QColorDialog::getColor(button.colour(), this);
  if (colour.isValid())
    button.setColour(colour);
}

void ConfigureWidget::chooseFont(FontButton& button) {
  bool accepted = false;
  const QFont font = QFontDialog::getFont(&accepted, button.font(), this);
  if (accepted)
    button.setShownFont(font);
}

void ConfigureWidget::blackPressed() {
  chooseColour(*normalColours_[Black]);
}
void ConfigureWidget::redPressed() {
  chooseColour(*normalColours_[Red]);
}
void ConfigureWidget::greenPressed() {
  chooseColour(*normalColours_[Green]);
}
void ConfigureWidget::yellowPressed() {
  chooseColour(*normalColours_[Yellow]);
}
void ConfigureWidget::bluePressed() {
  chooseColour(*normalColours_[Blue]);
}
void ConfigureWidget::magentaPressed() {
  chooseColour(*normalColours_[Magenta]);
}
void ConfigureWidget::cyanPressed() {
  chooseColour(*normalColours_[Cyan]);
}
void ConfigureWidget::whitePressed() {
  chooseColour(*normalColours_[White]);
}
void ConfigureWidget::blackPressedB() {
  chooseColour(*boldColours_[Black]);
}
void ConfigureWidget::redPressedB() {
  chooseColour(*boldColours_[Red]);
}
void ConfigureWidget::greenPressedB() {
  chooseColour(*boldColours_[Green]);
}
void ConfigureWidget::yellowPressedB() {
  chooseColour(*boldColours_[Yellow]);
}
void ConfigureWidget::bluePressedB() {
  chooseColour(*boldColours_[Blue]);
}
void ConfigureWidget::magentaPressedB() {
  chooseColour(*boldColours_[Magenta]);
}
void ConfigureWidget::cyanPressedB() {
  chooseColour(*boldColours_[Cyan]);
}
void ConfigureWidget::whitePressedB() {
  chooseColour(*boldColours_[White]);
}
void ConfigureWidget::outFontPressed() {
  chooseFont(*outFont_);
}
void ConfigureWidget::inFontPressed() {
  chooseFont(*inFont_);
}

void ConfigureWidget::selectStyle() {
  styleDialog_.showDialog();
}

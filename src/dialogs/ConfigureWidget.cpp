#include "dialogs/ConfigureWidget.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "dialogs/ColourButton.h"
#include "dialogs/DialogButtons.h"
#include "dialogs/FontButton.h"
#include "dialogs/SettingsHost.h"
#include "dialogs/StyleWidget.h"
#include "settings/ServerHosts.h"

using namespace kelmora;
using namespace kelmora::dialogs;

namespace {

using Record = settings::ClientSettings;
using Dialog = ConfigureWidget;
using Slot = void (Dialog::*)();

struct OptionRow {
  const char* label;
  bool Record::*option;
};

constexpr OptionRow optionRows[] = {
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Display ANSI color"), &Record::displayAnsiColor},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Enable local echo"), &Record::displayLocalEcho},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Play beeps"), &Record::playBeeps},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Parse html tags"), &Record::parseHtml},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Flush input bar"), &Record::flushInput},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Display clickable URLs"), &Record::displayURLs},
    {QT_TRANSLATE_NOOP("ConfigureWidget", "Split input by following string:"), &Record::splitInput},
};

/// One of the eight colours; its place in the table is its place in the record.
struct ColourRow {
  const char* label;
  Slot normalPressed;
  Slot boldPressed;
};

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

/// What an entry of the server list stands for; kept as the entry's data.
struct Server {
  QString host;
  int port;

  friend bool operator==(const Server&, const Server&) = default;
};

constexpr std::array<int, 4> serverPorts{4023, 5000, 11995, 23};
constexpr int longestServerHint = 40;  // characters
constexpr int columnSpacing = 16;      // pixels

QString textOf(const Server& server) {
  return server.host + QLatin1Char(' ') + QString::number(server.port);
}

}  // namespace

ConfigureWidget::ConfigureWidget(QWidget& mainWindow, SettingsHost& host, Record& settings)
    : QDialog(&mainWindow),
      host_(host),
      settings_(settings),
      styleDialog_(*new StyleWidget(mainWindow, host, settings)) {
  setWindowTitle(tr("General Settings"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/configure.png")));
  setModal(true);
  auto* grid = new QGridLayout(this);
  grid->setHorizontalSpacing(columnSpacing);
  // The Tab key visits the widgets in the order in which they are made here:
  // column by column.
  addHeaders(*grid);
  addOptions(*grid);
  addColours(*grid);
  addDisplay(*grid);
  addServers(*grid);
  addApplyAndCancel(*this, *grid, tr("Apply"), tr("Cancel"));
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
  for (const OptionRow& option : optionRows) {
    optionBoxes_.push_back(new QCheckBox(tr(option.label), this));
    grid.addWidget(optionBoxes_.back(), row++, 0);
  }
  splitString_ = new QLineEdit(this);
  splitString_->setAccessibleName(tr("String to split the input by"));
  grid.addWidget(splitString_, row++, 0);
  grid.addWidget(new QLabel(this), row, 0);
  grid.setRowStretch(row, 1);  // takes the height that a larger window has over
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
  connect(outFont_, &QPushButton::clicked, this, &ConfigureWidget::outFontPressed);
  connect(inFont_, &QPushButton::clicked, this, &ConfigureWidget::inFontPressed);
  connect(style, &QPushButton::clicked, this, &ConfigureWidget::selectStyle);
  grid.addWidget(outFont_, 1, 3);
  grid.addWidget(inFont_, 2, 3);
  grid.addWidget(style, 3, 3);
}

void ConfigureWidget::addServers(QGridLayout& grid) {
  auto* label = new QLabel(tr("Use the following server:"), this);
  label->setAlignment(Qt::AlignCenter);
  server_ = new QComboBox(this);
  label->setBuddy(server_);
  for (const QString& host :
       {settings::webDomain(), settings::serverHost(), settings::serverAddress()})
    for (const int port : serverPorts)
      server_->addItem(textOf({host, port}), QVariant::fromValue(Server{host, port}));
  grid.addWidget(label, 5, 3);
  grid.addWidget(server_, 6, 3);
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
  for (std::size_t i = 0; i < optionBoxes_.size(); ++i)
    optionBoxes_[i]->setChecked(settings_.*optionRows[i].option);
  splitString_->setText(settings_.splitString);
  showServer();
  optionBoxes_.front()->setFocus(Qt::OtherFocusReason);
}

void ConfigureWidget::showServer() {
  const Server stored{settings_.hostName, settings_.port};
  server_->setCurrentIndex(server_->findData(QVariant::fromValue(stored)));
  // The list shows this while no entry is chosen: the stored server is none of
  // the twelve then.
  const QString text = textOf(stored);
  server_->setPlaceholderText(
      text.size() <= longestServerHint ? text : text.first(longestServerHint - 1) + QChar(0x2026));
}

void ConfigureWidget::applySettings() {
  const auto takeColours = [](settings::ColourTexts& texts, const ColourButtons& buttons) {
    for (std::size_t i = 0; i < texts.size(); ++i)
      texts[i].assign(buttons[i]->colour().name().toLatin1());
  };
  takeColours(settings_.normalColour, normalColours_);
  takeColours(settings_.boldColour, boldColours_);
  for (std::size_t i = 0; i < optionBoxes_.size(); ++i)
    settings_.*optionRows[i].option = optionBoxes_[i]->isChecked();
  settings_.splitString = splitString_->text();
  settings_.outFont = outFont_->font();
  settings_.inFont = inFont_->font();
  takeServer();
  host_.applySettings(settings::Occasion::GeneralApplied);
  hide();
}

void ConfigureWidget::takeServer() {
  const QVariant chosen = server_->currentData();
  if (!chosen.isValid())
    return;  // no entry is chosen: the stored server stays
  const auto server = chosen.value<Server>();
  settings_.hostName = server.host;
  settings_.port = server.port;
}

void ConfigureWidget::cancelDialog() {
  hide();
}

void ConfigureWidget::chooseColour(const ColourButtons& buttons, Colour which) {
  ColourButton& button = *buttons.at(static_cast<std::size_t>(which));
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

void ConfigureWidget::selectStyle() {
  styleDialog_.showDialog();
}

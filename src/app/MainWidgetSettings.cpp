// How the options take effect in the window, and the saving, exporting and
// importing of them.

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QToolBar>
#include <algorithm>

#include "app/MainWidget.h"
#include "net/Proxy.h"
#include "settings/SettingsFile.h"
#include "settings/UsableValues.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;

namespace {

terminal::AnsiTranslator::ColourTexts textsOf(const settings::ColourTexts& colours) {
  terminal::AnsiTranslator::ColourTexts texts;
  std::transform(colours.begin(), colours.end(), texts.begin(),
                 [](const settings::ColourText& colour) { return colour.text(); });
  return texts;
}

net::Proxy proxyOf(const settings::ClientSettings& settings) {
  return {.type = settings.proxyType,
          .hostName = settings.proxyHostName,
          .port = settings.proxyPortNumber,
          .userName = settings.proxyUserName,
          .password = settings.proxyPassword};
}

}  // namespace

void MainWidget::applySettings(settings::Occasion occasion) {
  for (const settings::Effect effect : settings::effectsOf(occasion))
    takeEffect(effect);
}

void MainWidget::takeEffect(settings::Effect effect) {
  using enum settings::Effect;
  switch (effect) {
    case UsedProxy:
      if (settings_.useProxyServer)
        net::installProxy(proxyOf(settings_));
      return;
    case ProxyOrNone:
      if (settings_.useProxyServer)
        net::installProxy(proxyOf(settings_));
      else
        net::installNoProxy();
      return;
    case StartEcho:
      echoEnabled_ = settings_.displayLocalEcho;
      return;
    case Colours:
      pipeline_.translator().buildColourSpans(textsOf(settings_.normalColour),
                                              textsOf(settings_.boldColour));
      return;
    case BoldOff:
      pipeline_.translator().clearBold();
      return;
    case WidgetStyle:
      QApplication::setStyle(settings_.interfaceStyle);
      return;
    case IconSize:
      toolbar_->setIconSize(settings::usableIconSize(settings_.iconSize));
      return;
    case InputFont:
      inputBar_->setFont(settings_.inFont);
      return;
    case OutputFont:
      outputPane_->setFont(settings_.outFont);
      return;
    case Save:
      storeSettings();
      return;
  }
}

void MainWidget::storeSettings() {
  // Whether the file took the variables is not told: the next save tries again.
  (void)automationFiles_.writeVariables(variableTable_.entries());
  store_.save(settings_, {.size = size(), .pos = pos()});
}

void MainWidget::saveSettings() {
  const QString name = QFileDialog::getSaveFileName(this, tr("Export Settings"), {},
                                                    tr("Kelmora Client Settings (*.settings)"));
  if (!name.isEmpty() && !settings::exportSettings(settings_, name))
    QMessageBox::information(
        this, tr("Export Settings"),
        tr("There has been a failure exporting settings to the specified file."), QMessageBox::Ok);
  returnToInputBar();
}

void MainWidget::loadSettings() {
  const QString name = QFileDialog::getOpenFileName(this, tr("Import Settings"), {},
                                                    tr("Kelmora Client Settings (*.settings)"));
  if (!name.isEmpty()) {
    if (settings::importSettings(settings_, name))
      applySettings(settings::Occasion::Imported);
    else
      QMessageBox::information(
          this, tr("Import Settings"),
          tr("The specified file does not contain valid settings for this client."),
          QMessageBox::Ok);
  }
  returnToInputBar();
}

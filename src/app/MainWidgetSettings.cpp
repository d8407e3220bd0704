// How the options take effect in the window, and the saving, exporting and
// importing of them.

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QToolBar>

#include "app/MainWidget.h"
#include "app/Profile.h"
#include "net/Proxy.h"
#include "settings/SettingsFile.h"
#include "settings/UsableValues.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;

namespace {

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
      if (profile_.settings.useProxyServer)
        net::installProxy(proxyOf(profile_.settings));
      return;
    case ProxyOrNone:
      if (profile_.settings.useProxyServer)
        net::installProxy(proxyOf(profile_.settings));
      else
        net::installNoProxy();
      return;
    case Colours:
      play_->takeColours();
      return;
    case BoldOff:
      play_->clearBold();
      return;
    case WidgetStyle:
      QApplication::setStyle(profile_.settings.interfaceStyle);
      return;
    case IconSize:
      toolbar_->setIconSize(settings::usableIconSize(profile_.settings.iconSize));
      return;
    case InputFont:
      inputBar_->setFont(profile_.settings.inFont);
      return;
    case OutputFont:
      outputPane_->setFont(profile_.settings.outFont);
      return;
    case Save:
      storeSettings();
      return;
  }
}

void MainWidget::storeSettings() {
  // Whether the file took the variables is not told: the next save tries again.
  (void)profile_.files.writeVariables(profile_.variables.entries());
  const QPoint place = settings::posToStore(pos(), posAtStart_, QGuiApplication::platformName());
  profile_.store.save(profile_.settings, {.size = size(), .pos = place});
}

void MainWidget::saveSettings() {
  const QString name = QFileDialog::getSaveFileName(this, tr("Export Settings"), {},
                                                    tr("Kelmora Client Settings (*.settings)"));
  if (!name.isEmpty() && !settings::exportSettings(profile_.settings, name))
    QMessageBox::information(
        this, tr("Export Settings"),
        tr("There has been a failure exporting settings to the specified file."), QMessageBox::Ok);
  returnToInputBar();
}

void MainWidget::loadSettings() {
  const QString name = QFileDialog::getOpenFileName(this, tr("Import Settings"), {},
                                                    tr("Kelmora Client Settings (*.settings)"));
  if (!name.isEmpty()) {
    if (settings::importSettings(profile_.settings, name))
      applySettings(settings::Occasion::Imported);
    else
      QMessageBox::information(
          this, tr("Import Settings"),
          tr("The specified file does not contain valid settings for this client."),
          QMessageBox::Ok);
  }
  returnToInputBar();
}

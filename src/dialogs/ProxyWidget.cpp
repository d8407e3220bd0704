#include "dialogs/ProxyWidget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkProxy>
#include <algorithm>

#include "dialogs/DialogButtons.h"
#include "dialogs/SettingsHost.h"
#include "settings/ClientSettings.h"

using namespace kelmora;
using namespace kelmora::dialogs;

namespace {

using Record = settings::ClientSettings;

struct TypeRow {
  const char* name;
  QNetworkProxy::ProxyType type;
};

// A stored type that is none of these is shown as the first.
constexpr TypeRow typeRows[] = {
    {QT_TRANSLATE_NOOP("ProxyWidget", "Socks5"), QNetworkProxy::Socks5Proxy},
    {QT_TRANSLATE_NOOP("ProxyWidget", "HTTP"), QNetworkProxy::HttpProxy},
    {QT_TRANSLATE_NOOP("ProxyWidget", "HTTP Caching"), QNetworkProxy::HttpCachingProxy},
    {QT_TRANSLATE_NOOP("ProxyWidget", "FTP Caching"), QNetworkProxy::FtpCachingProxy},
};

/// Takes any int. Digits are not grouped, whatever is usual in the user's language:
/// a port typed as "8,080" would later be read as 0.
void takeIntegers(QLineEdit& edit) {
  auto* validator = new QIntValidator(&edit);
  QLocale locale = QLocale::c();
  locale.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
  validator->setLocale(locale);
  edit.setValidator(validator);
}

void hideText(QLineEdit& edit) {
  edit.setEchoMode(QLineEdit::Password);
}

struct TextRow {
  const char* label;
  QString Record::*text;
  void (*prepare)(QLineEdit& edit) = nullptr;
};

constexpr TextRow textRows[] = {
    {QT_TRANSLATE_NOOP("ProxyWidget", "Hostname"), &Record::proxyHostName},
    {QT_TRANSLATE_NOOP("ProxyWidget", "Port"), &Record::proxyPortNumber, takeIntegers},
    {QT_TRANSLATE_NOOP("ProxyWidget", "Username"), &Record::proxyUserName},
    {QT_TRANSLATE_NOOP("ProxyWidget", "Password"), &Record::proxyPassword, hideText},
};

constexpr int fieldWidth = 28;  // characters: most host names fit

}  // namespace

ProxyWidget::ProxyWidget(QWidget& mainWindow, SettingsHost& host, Record& settings)
    : QDialog(&mainWindow),
      host_(host),
      settings_(settings),
      useProxy_(new QCheckBox(tr("Use the following proxy server:"), this)),
      type_(new QComboBox(this)) {
  setWindowTitle(tr("Proxy Settings"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/proxy.png")));
  setModal(true);
  auto* grid = new QGridLayout(this);
  grid->addWidget(useProxy_, 0, 0);
  for (const TypeRow& row : typeRows)
    type_->addItem(tr(row.name), static_cast<int>(row.type));
  addField(*grid, tr("Proxy type"), type_);
  for (const TextRow& row : textRows) {
    texts_.push_back(new QLineEdit(this));
    if (row.prepare)
      row.prepare(*texts_.back());
    addField(*grid, tr(row.label), texts_.back());
  }
  addApplyAndCancel(*this, *grid, tr("Apply"), tr("Cancel"));
  grid->setColumnMinimumWidth(1, fieldWidth * fontMetrics().averageCharWidth());
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(grid->rowCount(), 1);  // takes the height that a larger window has over
}

void ProxyWidget::addField(QGridLayout& grid, const QString& label, QWidget* field) {
  const int row = grid.rowCount();
  auto* name = new QLabel(label, this);
  name->setBuddy(field);
  grid.addWidget(name, row, 0);
  grid.addWidget(field, row, 1);
}

void ProxyWidget::showDialog() {
  show();
  type_->setCurrentIndex(std::max(type_->findData(settings_.proxyType), 0));
  for (std::size_t i = 0; i < texts_.size(); ++i)
    texts_[i]->setText(settings_.*textRows[i].text);
  useProxy_->setChecked(settings_.useProxyServer);
  useProxy_->setFocus(Qt::OtherFocusReason);
}

void ProxyWidget::applySettings() {
  settings_.proxyType = type_->currentData().toInt();
  for (std::size_t i = 0; i < texts_.size(); ++i)
    settings_.*textRows[i].text = texts_[i]->text();
  settings_.useProxyServer = useProxy_->isChecked();
  host_.applySettings(settings::Occasion::ProxyApplied);
  hide();
}

void ProxyWidget::cancelDialog() {
  hide();
}

#include "dialogs/ProxyWidget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkProxy>
#include <QPushButton>
#include <algorithm>
#include <array>

#include "dialogs/SettingsHost.h"
#include "settings/ClientSettings.h"

using namespace kelmora;
using namespace kelmora::dialogs;

namespace {

struct ProxyKind {
  const char* name;
  QNetworkProxy::ProxyType type;
};

// The first is taken for whatever is none of these.
constexpr std::array<ProxyKind, 4> proxyKinds{{
    {"Socks5", QNetworkProxy::Socks5Proxy},
    {"HTTP", QNetworkProxy::HttpProxy},
    {"HTTP Caching", QNetworkProxy::HttpCachingProxy},
    {"FTP Caching", QNetworkProxy::FtpCachingProxy},
}};

constexpr int fieldWidth = 28;  // characters: most host names fit

QString nameOf(int type) {
  const auto kind = std::find_if(proxyKinds.begin(), proxyKinds.end(),
                                 [&](const ProxyKind& k) { return k.type == type; });
  return QString::fromLatin1((kind != proxyKinds.end() ? *kind : proxyKinds.front()).name);
}

int typeOf(const QString& name) {
  const auto kind = std::find_if(proxyKinds.begin(), proxyKinds.end(),
                                 [&](const ProxyKind& k) { return name == QLatin1String(k.name); });
  return (kind != proxyKinds.end() ? *kind : proxyKinds.front()).type;
}

/// Any int, in the one form in which the port's text is read later: no digit
/// groups, whatever the user's locale writes.
QIntValidator* integerValidator(QObject* parent) {
  auto* validator = new QIntValidator(parent);
  QLocale locale = QLocale::c();
  locale.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
  validator->setLocale(locale);
  return validator;
}

}  // namespace

ProxyWidget::ProxyWidget(QWidget& mainWindow, SettingsHost& host,
                         settings::ClientSettings& settings)
    : QDialog(&mainWindow),
      host_(host),
      settings_(settings),
      useProxy_(new QCheckBox(tr("Use the following proxy server:"), this)),
      type_(new QComboBox(this)),
      hostName_(new QLineEdit(this)),
      port_(new QLineEdit(this)),
      userName_(new QLineEdit(this)),
      password_(new QLineEdit(this)) {
  setWindowTitle(tr("Proxy Settings"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/proxy.png")));
  setModal(true);
  for (const ProxyKind& kind : proxyKinds)
    type_->addItem(QString::fromLatin1(kind.name));
  port_->setValidator(integerValidator(port_));
  password_->setEchoMode(QLineEdit::Password);

  auto* grid = new QGridLayout(this);
  grid->addWidget(useProxy_, 0, 0);
  int row = 1;
  const auto addRow = [&](const QString& text, QWidget* field) {
    auto* label = new QLabel(text, this);
    label->setBuddy(field);
    grid->addWidget(label, row, 0);
    grid->addWidget(field, row, 1);
    ++row;
  };
  addRow(tr("Proxy type"), type_);
  addRow(tr("Hostname"), hostName_);
  addRow(tr("Port"), port_);
  addRow(tr("Username"), userName_);
  addRow(tr("Password"), password_);

  auto* apply = new QPushButton(tr("Apply"), this);
  apply->setDefault(true);
  auto* cancel = new QPushButton(tr("Cancel"), this);
  connect(apply, &QPushButton::clicked, this, &ProxyWidget::applySettings);
  connect(cancel, &QPushButton::clicked, this, &ProxyWidget::cancelDialog);
  grid->addWidget(apply, row, 0, Qt::AlignLeft);
  grid->addWidget(cancel, row, 1, Qt::AlignRight);
  grid->setColumnMinimumWidth(1, fieldWidth * fontMetrics().averageCharWidth());
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(row + 1, 1);  // what a larger window has over
}

void ProxyWidget::showDialog() {
  show();
  type_->setCurrentIndex(
      type_->findText(nameOf(settings_.proxyType), Qt::MatchExactly | Qt::MatchCaseSensitive));
  hostName_->setText(settings_.proxyHostName);
  port_->setText(settings_.proxyPortNumber);
  userName_->setText(settings_.proxyUserName);
  password_->setText(settings_.proxyPassword);
  useProxy_->setChecked(settings_.useProxyServer);
  useProxy_->setFocus(Qt::OtherFocusReason);
}

void ProxyWidget::applySettings() {
  settings_.proxyType = typeOf(type_->currentText());
  settings_.proxyHostName = hostName_->text();
  settings_.proxyPortNumber = port_->text();
  settings_.proxyUserName = userName_->text();
  settings_.proxyPassword = password_->text();
  settings_.useProxyServer = useProxy_->isChecked();
  host_.storeSettings();
  host_.installProxy();
  hide();
}

void ProxyWidget::cancelDialog() {
  hide();
}

#include "net/Proxy.h"

#include <QNetworkProxy>

#include "settings/ClientSettings.h"

namespace kelmora::net {

namespace {

QNetworkProxy::ProxyType proxyType(int stored) {
  const bool known =
      stored >= QNetworkProxy::DefaultProxy && stored <= QNetworkProxy::FtpCachingProxy;
  return known ? static_cast<QNetworkProxy::ProxyType>(stored) : QNetworkProxy::Socks5Proxy;
}

}  // namespace

void installConfiguredProxy(const settings::ClientSettings& settings) {
  const auto port = static_cast<quint16>(settings.proxyPortNumber.toInt());
  QNetworkProxy::setApplicationProxy(QNetworkProxy(proxyType(settings.proxyType),
                                                   settings.proxyHostName, port,
                                                   settings.proxyUserName, settings.proxyPassword));
}

void installNoProxy() {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

}  // namespace kelmora::net

#include "net/Proxy.h"

#include <QNetworkProxy>

namespace kelmora::net {

namespace {

QNetworkProxy::ProxyType typeOf(int number) {
  const bool known =
      number >= QNetworkProxy::DefaultProxy && number <= QNetworkProxy::FtpCachingProxy;
  return known ? static_cast<QNetworkProxy::ProxyType>(number) : QNetworkProxy::Socks5Proxy;
}

}  // namespace

void installProxy(const Proxy& proxy) {
  const auto type = typeOf(proxy.type);
  const auto port = static_cast<quint16>(proxy.port.toInt());
  QNetworkProxy::setApplicationProxy(
      QNetworkProxy(type, proxy.hostName, port, proxy.userName, proxy.password));
}

void installNoProxy() {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

}  // namespace kelmora::net

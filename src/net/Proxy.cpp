#include "net/Proxy.h"

#include <QNetworkProxy>

#include "net/Log.h"

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
  qCInfo(connectionLog) << "proxy" << proxy.hostName << "port" << port << "type" << type;
  if (type != proxy.type)
    qCWarning(connectionLog) << "unknown proxy type" << proxy.type << "taken for SOCKS 5";
  if (QString::number(port) != proxy.port)
    qCWarning(connectionLog) << "proxy port" << proxy.port << "taken for" << port;
  QNetworkProxy::setApplicationProxy(
      QNetworkProxy(type, proxy.hostName, port, proxy.userName, proxy.password));
}

void installNoProxy() {
  qCInfo(connectionLog) << "no proxy";
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

}  // namespace kelmora::net

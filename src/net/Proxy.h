#pragma once

#include <QNetworkProxy>
#include <QString>

namespace kelmora::net {

/// A proxy server, as the player's settings keep it.
struct Proxy {
  /// A QNetworkProxy::ProxyType. A number that is none means SOCKS 5.
  int type = QNetworkProxy::Socks5Proxy;
  QString hostName;
  /// A decimal number, of which the low 16 bits are used. A text that is no
  /// 32-bit integer means 0.
  QString port;
  QString userName;
  QString password;
};

/// From now on, every new connection goes through this proxy.
void installProxy(const Proxy& proxy);

/// From now on, every new connection is a direct one, even if the system has a
/// proxy configured.
void installNoProxy();

}  // namespace kelmora::net

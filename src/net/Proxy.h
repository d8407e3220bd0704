#pragma once

namespace kelmora::settings {
struct ClientSettings;
}

namespace kelmora::net {

/// Makes the proxy of the record the application's, for every connection from
/// now on. A type outside QNetworkProxy's counts as SOCKS 5; the port is the
/// text's integer cut to 16 bits, 0 when it is none.
void installConfiguredProxy(const settings::ClientSettings& settings);

/// Makes every connection from now on a direct one, whatever the platform says.
void installNoProxy();

}  // namespace kelmora::net

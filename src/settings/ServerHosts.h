#pragma once

#include <QString>

namespace kelmora::settings {

/// The hosts of the game, fixed when the client is built (the CMake cache
/// values KELMORA_SERVER_HOST, KELMORA_WEB_DOMAIN and KELMORA_SERVER_ADDRESS).
[[nodiscard]] QString serverHost();     ///< also the default of ClientSettings::hostName
[[nodiscard]] QString webDomain();      ///< without a scheme
[[nodiscard]] QString serverAddress();  ///< a numeric IPv4 address

inline constexpr int defaultPort = 5000;

}  // namespace kelmora::settings

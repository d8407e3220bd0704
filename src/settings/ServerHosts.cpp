#include "settings/ServerHosts.h"

namespace kelmora::settings {

QString serverHost() {
  return QStringLiteral(KELMORA_SERVER_HOST);
}
QString webDomain() {
  return QStringLiteral(KELMORA_WEB_DOMAIN);
}
QString serverAddress() {
  return QStringLiteral(KELMORA_SERVER_ADDRESS);
}

}  // namespace kelmora::settings

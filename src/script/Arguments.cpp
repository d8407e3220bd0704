#include "script/Arguments.h"

#include "scan/Format.h"

namespace script {

namespace {

scan::Format compiled(QByteArrayView format) {
  // Both formats are written below and compile.
  return scan::Format::compile(format).value();
}

}  // namespace

std::optional<Arguments> splitOneArgument(const QString& action) {
  static const scan::Format format = compiled("%*s %[^\n]");
  const scan::Result fields = format.scan(action.toLatin1());
  if (!fields.complete())
    return std::nullopt;
  return Arguments{.first = QString::fromUtf8(fields.text(0)), .second = {}};
}

std::optional<Arguments> splitTwoArguments(const QString& action) {
  static const scan::Format format = compiled("%*s %[^,],%[^\n]");
  const scan::Result fields = format.scan(action.toLatin1());
  if (!fields.complete())
    return std::nullopt;
  return Arguments{.first = QString::fromUtf8(fields.text(0)),
                   .second = QString::fromUtf8(fields.text(1))};
}

}  // namespace script

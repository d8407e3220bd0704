#include "script/Arguments.h"

#include "scan/Format.h"

namespace kelmora::script {

namespace {

scan::Format compiled(QByteArrayView format) {
  // value() cannot fail: the two formats below are valid. A field may be one byte
  // longer than an argument, which shows that the text was too long.
  return scan::Format::compile(format, longestArgument + 1).value();
}

QString argumentOf(const QByteArray& field) {
  return QString::fromUtf8(field.first(qMin(field.size(), longestArgument)));
}

}  // namespace

std::optional<Arguments> splitOneArgument(const QString& action) {
  static const scan::Format format = compiled("%*s %[^\n]");
  const scan::Result fields = format.scan(action.toLatin1());
  if (!fields.complete())
    return std::nullopt;
  const QByteArray only = fields.text(0);
  return Arguments{
      .first = argumentOf(only), .second = {}, .wasCut = only.size() > longestArgument};
}

std::optional<Arguments> splitTwoArguments(const QString& action) {
  static const scan::Format format = compiled("%*s %[^,],%[^\n]");
  const scan::Result fields = format.scan(action.toLatin1());
  if (!fields.complete() || fields.text(0).size() > longestArgument)
    return std::nullopt;
  const QByteArray second = fields.text(1);
  return Arguments{.first = argumentOf(fields.text(0)),
                   .second = argumentOf(second),
                   .wasCut = second.size() > longestArgument};
}

}  // namespace kelmora::script

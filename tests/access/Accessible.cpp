#include "access/Accessible.h"

#include <QDBusMessage>
#include <QDBusMetaType>

namespace {

QString interfaceOf(const char* name) {
  return QStringLiteral("org.a11y.atspi.") + QLatin1String(name);
}

constexpr int patience = 20000;  // milliseconds

struct Relation {
  quint32 kind = 0;
  QList<Accessible> targets = {};
};

const QDBusArgument& operator>>(const QDBusArgument& argument, Relation& relation) {
  argument.beginStructure();
  argument >> relation.kind >> relation.targets;
  argument.endStructure();
  return argument;
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const Accessible& object) {
  argument.beginStructure();
  argument << object.program_ << QDBusObjectPath(object.path_);
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Accessible& object) {
  QDBusObjectPath path;
  argument.beginStructure();
  argument >> object.program_ >> path;
  argument.endStructure();
  object.path_ = path.path();
  return argument;
}

QDBusConnection accessibilityBus() {
  static const QDBusConnection bus = [] {
    qDBusRegisterMetaType<Accessible>();
    qDBusRegisterMetaType<QList<Accessible>>();
    const QDBusMessage answer = QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
    const QString address = answer.arguments().value(0).toString();
    return QDBusConnection::connectToBus(address, QStringLiteral("accessibility"));
  }();
  return bus;
}

QVariantList Accessible::callForAll(const char* interface, const char* method,
                                    const QVariantList& arguments) const {
  QDBusMessage message = QDBusMessage::createMethodCall(program_, path_, interfaceOf(interface),
                                                        QLatin1String(method));
  message.setArguments(arguments);
  const QDBusMessage answer = accessibilityBus().call(message, QDBus::Block, patience);
  if (answer.type() == QDBusMessage::ErrorMessage) {
    qWarning("%s.%s of %s: %s", interface, method, qPrintable(path_),
             qPrintable(answer.errorMessage()));
    return {};
  }
  return answer.arguments();
}

QVariant Accessible::call(const char* interface, const char* method,
                          const QVariantList& arguments) const {
  return callForAll(interface, method, arguments).value(0);
}

QVariant Accessible::property(const char* interface, const char* name) const {
  QDBusMessage message = QDBusMessage::createMethodCall(
      program_, path_, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  message.setArguments({interfaceOf(interface), QLatin1String(name)});
  const QDBusMessage answer = accessibilityBus().call(message, QDBus::Block, patience);
  return answer.arguments().value(0).value<QDBusVariant>().variant();
}

void Accessible::press() const {
  QDBusMessage message = QDBusMessage::createMethodCall(program_, path_, interfaceOf("Action"),
                                                        QStringLiteral("DoAction"));
  message.setArguments({0});
  accessibilityBus().send(message);
}

QString Accessible::name() const {
  return property("Accessible", "Name").toString();
}

QString Accessible::role() const {
  return call("Accessible", "GetRoleName").toString();
}

bool Accessible::isPassword() const {
  constexpr uint passwordText = 40;
  return call("Accessible", "GetRole").toUInt() == passwordText;
}

bool Accessible::is(int state) const {
  const auto words = qdbus_cast<QList<quint32>>(call("Accessible", "GetState"));
  constexpr int bits = 32;
  return (words.value(state / bits) >> (state % bits) & 1U) != 0;
}

QList<Accessible> Accessible::children() const {
  return qdbus_cast<QList<Accessible>>(call("Accessible", "GetChildren"));
}

QList<Accessible> Accessible::all() const {
  QList<Accessible> found{*this};
  for (const Accessible& child : children())
    found << child.all();
  return found;
}

std::optional<Accessible> Accessible::find(const QString& role, const QString& name) const {
  for (const Accessible& each : all())
    if (each.name() == name && each.role() == role)
      return each;
  return std::nullopt;
}

QStringList Accessible::labels() const {
  constexpr quint32 labelledBy = 2;
  const QVariant answer = call("Accessible", "GetRelationSet");
  const auto argument = answer.value<QDBusArgument>();
  QStringList names;
  argument.beginArray();
  while (!argument.atEnd()) {
    Relation relation;
    argument >> relation;
    if (relation.kind == labelledBy)
      for (const Accessible& label : relation.targets)
        names << label.name();
  }
  argument.endArray();
  return names;
}

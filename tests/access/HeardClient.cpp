#include "access/HeardClient.h"

#include <QDBusVariant>
#include <QFile>
#include <QTest>

namespace {

const Accessible registry(QStringLiteral("org.a11y.atspi.Registry"),
                          QStringLiteral("/org/a11y/atspi/registry"));
const Accessible desktop(QStringLiteral("org.a11y.atspi.Registry"),
                         QStringLiteral("/org/a11y/atspi/accessible/root"));

void storeServer(const QString& folder, quint16 port) {
  const QString place = folder + QStringLiteral("/Dunmere Works");
  QDir().mkpath(place);
  QFile file(place + QStringLiteral("/Kelmora Client v3.9b.conf"));
  file.open(QIODevice::WriteOnly);
  file.write("[Global%20Settings]\nhostName=127.0.0.1\nport=" + QByteArray::number(port) +
             "\npos=@Point(20 20)\n");
}

}  // namespace

HeardClient::HeardClient(const GameServer& server) {
  QDBusConnection bus = accessibilityBus();
  const QString events = QStringLiteral("org.a11y.atspi.Event.Object");
  for (const char* signal : {"StateChanged", "PropertyChange", "TextChanged", "Announcement"})
    bus.connect(QString(), QString(), events, QLatin1String(signal), this,
                SLOT(hear(QDBusMessage)));
  registry.call("Registry", "RegisterEvent", {QStringLiteral("object:"), QStringList(), QString()});

  storeServer(folder_.path(), server.port());
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folder_.path());
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
  environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
  process_.setProcessEnvironment(environment);
  process_.setWorkingDirectory(folder_.path());
  process_.start(QStringLiteral(KELMORA_PROGRAM), QStringList());

  const auto isThere = [this] {
    for (const Accessible& program : desktop.children())
      for (const Accessible& window : program.children())
        if (window.name() == QLatin1String("Kelmora - The Official Client") &&
            window.is(state::showing))
          application_ = program;
    return !application_.isNull();
  };
  constexpr int patience = 15000;  // milliseconds
  (void)QTest::qWaitFor(isThere, patience);
}

HeardClient::~HeardClient() {
  process_.terminate();
  if (!process_.waitForFinished(5000))
    process_.kill();
  process_.waitForFinished();
}

Accessible HeardClient::button(const QString& beginning) const {
  for (const Accessible& each : application_.all())
    if (each.name().startsWith(beginning))
      return each;
  return {};
}

QStringList HeardClient::spoken() const {
  QStringList lines;
  for (const QStringList& each : announcements_)
    lines << each;
  return lines;
}

void HeardClient::forget() {
  events_.clear();
  announcements_.clear();
  notices_.clear();
}

void HeardClient::hear(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  const QString detail = arguments.value(0).toString();
  const Event event{QStringLiteral("%1 %2").arg(message.member(), detail),
                    {message.service(), message.path()},
                    arguments.value(3).value<QDBusVariant>().variant()};
  events_ << event;
  const bool isShown =
      event.name == QLatin1String("StateChanged showing") && arguments.value(1).toInt() == 1;
  if (message.member() == QLatin1String("Announcement")) {
    announcements_ << event.data.toString().split(u'\n');
  } else if (isShown && event.source.role() == QLatin1String("notification")) {
    announcements_ << event.source.name().split(u'\n');
    notices_ << event.source;
  }
}

// How long a script without an end holds the window: shapes of one, each in a
// window of its own that is connected to a server and echoes what it sends.
//
// bench_scripts [SHAPE] prints for each shape, or for that one, as
// comma-separated values: the shape, milliseconds until the run was stopped,
// the longest turn of the event loop behind it, milliseconds until the pane
// was quiet again, megabytes taken at most (of the whole process so far).

#include <QApplication>
#include <QTcpServer>
#include <QTcpSocket>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "app/ApplicationFonts.h"
#include "app/MainWidget.h"
#include "app/Profile.h"
#include "support/ScratchFolder.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::app;
using namespace kelmora::terminal;

namespace {

struct Shape {
  const char* name;
  QStringList actions;
  std::function<void(Profile&)> prepare = [](Profile&) {};
};

QString fullLoops(const QString& body) {
  return QStringLiteral("/repeat 512, /repeat 512, /repeat 512, ") + body;
}

std::function<void(Profile&)> withVariables(int count) {
  return [count](Profile& profile) {
    for (int number = 0; number < count; ++number)
      profile.variables.set(QStringLiteral("v%1").arg(number), QStringLiteral("value"));
    profile.variables.set(QStringLiteral("n"), QStringLiteral("0"));
  };
}

std::function<void(Profile&)> withLongValue(const QString& letter) {
  return [letter](Profile& profile) {
    profile.variables.set(QStringLiteral("v"), letter.repeated(65'536 / letter.size()));
    profile.variables.set(QStringLiteral("w"), {});
  };
}

std::function<void(Profile&)> withAlias(const QString& name, const QStringList& commands) {
  return [=](Profile& profile) { profile.aliases.append({name, commands}); };
}

std::vector<Shape> shapes() {
  const auto loop = [](const QString& body) { return QStringList{fullLoops(body)}; };
  const QString long900(900, u'x');
  QStringList longList{QStringLiteral("/pause t, 60000")};
  longList += QStringList(100'000, QStringLiteral("x"));
  return {
      {"add", loop("/add n, 1"), withVariables(0)},
      {"add with 200 variables", loop("/add n, {v1}"), withVariables(200)},
      {"set with 10,000 variables", loop("/set n, {v1}{v2}{v3}"), withVariables(10'000)},
      {"braces that name nothing", loop("/set n, " + QStringLiteral("{}{").repeated(300)),
       withVariables(10'000)},
      {"set a long value", loop("/set w, {v}"), withLongValue("x")},
      {"set a long value of braces", loop("/set w, {v}"), withLongValue("{}")},
      {"compare long texts", loop("/islessthan {v}, {v}"), withLongValue("x")},
      {"compare long numbers", loop("/islessthan {v}, {v}"), withLongValue("1")},
      {"add long numbers", loop("/subtract v, {v}"), withLongValue("1")},
      {"append to a long value", loop("/add v, x"), withLongValue("x")},
      {"send", loop("kill orc")},
      {"send long lines", loop(long900)},
      {"echo", loop("/echo hello")},
      {"echo long lines", loop("/echo " + long900)},
      {"echo a long value", loop("/echo {v}"), withLongValue("x")},
      {"echo a long value of words", loop("/echo {v}"), withLongValue("word ")},
      {"echo in no colour", loop("/echo a, b")},
      {"errors", loop("/set x")},
      {"errors of a missing name", loop("/add missing, 1")},
      {"variables, 10,000 of them", loop("/variables"), withVariables(10'000)},
      {"variables with a long value", loop("/variables"), withLongValue("x")},
      {"an alias in a condition", {"/isequal 1, 1", "a"}, withAlias("a", {"/cond a"})},
      {"an alias in a condition that has more to do",
       {"/isequal 1, 1", "a"},
       withAlias("a", {"/cond a", "x"})},
      {"an alias in a loop", {"a"}, withAlias("a", {"/repeat 2, a"})},
      {"a tree of aliases",
       {"0"},
       [](Profile& profile) {
         for (int level = 0; level < 60; ++level)
           profile.aliases.append(
               {QString::number(level), QStringList(2, QString::number(level + 1))});
       }},
      {"pauses in a long list", loop("p"),
       [=](Profile& profile) {
         profile.aliases.append({"p", {"l", "/unpause t"}});
         profile.aliases.append({"l", longList});
       }},
  };
}

/// Of the processor, which is what the window is held for on a machine that
/// does nothing else.
double milliseconds() {
  return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

long peakMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmHWM:"))
      return std::stol(line.substr(6)) / 1024;
  return 0;
}

void measure(const Shape& shape) {
  QTcpServer server;
  server.listen(QHostAddress::LocalHost);
  Profile profile({.iniFile = QStringLiteral("store.ini")});
  MainWidget window(profile);
  profile.settings.hostName = QStringLiteral("127.0.0.1");
  profile.settings.port = server.serverPort();
  auto* const pane = window.findChild<OutputWidget*>();
  window.show();
  window.connectToServer();
  while (!server.hasPendingConnections() || !pane->settled())
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  shape.prepare(profile);

  const double start = milliseconds();
  window.runActions(shape.actions);
  const double stopped = milliseconds();
  double longest = 0;
  while (!pane->settled()) {
    const double turn = milliseconds();
    QCoreApplication::processEvents();
    longest = std::max(longest, milliseconds() - turn);
  }
  std::printf("%s,%.0f,%.0f,%.0f,%ld\n", shape.name, stopped - start, longest,
              milliseconds() - start, peakMegabytes());
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const ScratchFolder scratch;
  QApplication application(argc, argv);
  installApplicationFonts();
  const std::string wanted = argc > 1 ? argv[1] : "";
  for (const Shape& shape : shapes())
    if (wanted.empty() || wanted == shape.name)
      measure(shape);
  return 0;
}

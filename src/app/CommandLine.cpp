#include "app/CommandLine.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <array>

namespace kelmora::app {

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

constexpr int wrongUse = 2;

struct ToolkitOption {
  const char* name;
  bool takesValue;
};

// QApplication and the X11 platform take these out of the arguments, but not
// before they have looked for a display. They are known here so that a wrong
// option can be told from them without one.
constexpr std::array toolkitOptions{
    ToolkitOption{"display", true},       ToolkitOption{"dograb", false},
    ToolkitOption{"geometry", true},      ToolkitOption{"icon", true},
    ToolkitOption{"name", true},          ToolkitOption{"nograb", false},
    ToolkitOption{"platform", true},      ToolkitOption{"platformpluginpath", true},
    ToolkitOption{"platformtheme", true}, ToolkitOption{"plugin", true},
    ToolkitOption{"qmljsdebugger", true}, ToolkitOption{"qwindowgeometry", true},
    ToolkitOption{"qwindowicon", true},   ToolkitOption{"qwindowtitle", true},
    ToolkitOption{"reverse", false},      ToolkitOption{"session", true},
    ToolkitOption{"style", true},         ToolkitOption{"stylesheet", true},
    ToolkitOption{"testability", false},  ToolkitOption{"title", true},
    ToolkitOption{"widgetcount", false},
};

void addToolkitOptions(QCommandLineParser& parser) {
  for (const ToolkitOption& option : toolkitOptions) {
    const QString name = QString::fromLatin1(option.name);
    parser.addOption(option.takesValue ? QCommandLineOption(name, {}, name)
                                       : QCommandLineOption(name));
  }
}

QString helpText() {
  return Words::tr(
      "Usage: kelmora [options]\n"
      "A client for the text game Kelmora. Without options it opens its window.\n"
      "\n"
      "Options:\n"
      "  -h, --help     Show this text and end.\n"
      "  -v, --version  Show the version and end.\n"
      "\n"
      "Options of Qt, such as -style and -platform, are taken as well.\n");
}

}  // namespace

std::optional<CommandLineAnswer> answerTo(const QStringList& arguments) {
  QCommandLineParser parser;
  // As the toolkit takes its own: with one dash or with two.
  parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
  const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
  const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")});
  parser.addOption(help);
  parser.addOption(version);
  addToolkitOptions(parser);
  // The parser passes over the program's name.
  if (!parser.parse(QStringList(QString()) + arguments))
    return CommandLineAnswer{
        Words::tr("kelmora: %1\nTry 'kelmora --help'.\n").arg(parser.errorText()), wrongUse};
  if (parser.isSet(help))
    return CommandLineAnswer{helpText(), 0};
  if (parser.isSet(version))
    return CommandLineAnswer{QStringLiteral("kelmora " KELMORA_VERSION "\n"), 0};
  return std::nullopt;
}

}  // namespace kelmora::app

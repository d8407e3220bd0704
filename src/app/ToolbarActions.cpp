#include "app/ToolbarActions.h"

#include <QAction>
#include <QCoreApplication>
#include <QIcon>
#include <QToolBar>

namespace kelmora::app {

namespace {

struct ActionRow {
  const char* icon;
  const char* text;  ///< also the status tip
  const char* shortcut;
  bool enabled;
  bool separatorBehind;
};

constexpr std::array<ActionRow, toolbarActionCount> actionRows{{
    {"connect", QT_TRANSLATE_NOOP("MainWidget", "Play Kelmora (Ctrl+J)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+J"), true, false},
    {"disconnect", QT_TRANSLATE_NOOP("MainWidget", "Disconnect from Kelmora (Ctrl+D)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+D"), false, true},
    {"savebuffer", QT_TRANSLATE_NOOP("MainWidget", "Save game session to file (Ctrl+S)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+S"), true, false},
    {"savesettings", QT_TRANSLATE_NOOP("MainWidget", "Export settings (Ctrl+E)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+E"), true, false},
    {"loadsettings", QT_TRANSLATE_NOOP("MainWidget", "Import settings (Ctrl+I)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+I"), true, true},
    {"configure", QT_TRANSLATE_NOOP("MainWidget", "General settings (Ctrl+G)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+G"), true, false},
    {"proxy", QT_TRANSLATE_NOOP("MainWidget", "Proxy settings (Ctrl+P)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+P"), true, true},
    {"macros", QT_TRANSLATE_NOOP("MainWidget", "Edit macros (Ctrl+M)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+M"), true, false},
    {"aliases", QT_TRANSLATE_NOOP("MainWidget", "Edit aliases (Ctrl+L)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+L"), true, false},
    {"triggers", QT_TRANSLATE_NOOP("MainWidget", "Edit triggers (Ctrl+T)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+T"), true, true},
    {"help", QT_TRANSLATE_NOOP("MainWidget", "Kelmora help (Ctrl+H)"),
     QT_TRANSLATE_NOOP("MainWidget", "Ctrl+H"), true, true},
}};

QString translated(const char* text) {
  return QCoreApplication::translate("MainWidget", text);
}

}  // namespace

std::array<QAction*, toolbarActionCount> addToolbarActions(QToolBar& toolbar) {
  std::array<QAction*, toolbarActionCount> actions{};
  for (std::size_t i = 0; i < actionRows.size(); ++i) {
    const ActionRow& row = actionRows.at(i);
    const QIcon icon(QStringLiteral(":/icons/%1.png").arg(QLatin1String(row.icon)));
    auto* action = new QAction(icon, translated(row.text), &toolbar);
    action->setShortcut(QKeySequence(translated(row.shortcut)));
    action->setStatusTip(QString::fromLatin1(row.text));
    action->setEnabled(row.enabled);
    toolbar.addAction(action);
    if (row.separatorBehind)
      toolbar.addSeparator();
    actions.at(i) = action;
  }
  return actions;
}

}  // namespace kelmora::app

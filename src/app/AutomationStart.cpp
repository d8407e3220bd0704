#include "app/AutomationStart.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <array>
#include <functional>

#include "app/Profile.h"

namespace kelmora::app {

void loadAutomationFiles(QWidget& parent, Profile& profile) {
  automation::AutomationFiles& files = profile.files;
  script::VariableTable::Entries variables;
  struct FileRow {
    const char* title;
    const char* failure;
    std::function<bool()> load;
  };
  const std::array<FileRow, 4> rows{{
      {QT_TRANSLATE_NOOP("MainWidget", "Macros"),
       QT_TRANSLATE_NOOP("MainWidget", "There has been a failure reading your macros.txt file."),
       [&] { return files.loadMacros(profile.macros); }},
      {QT_TRANSLATE_NOOP("MainWidget", "Triggers"),
       QT_TRANSLATE_NOOP("MainWidget", "There has been a failure reading your triggers.txt file."),
       [&] { return files.loadTriggers(profile.triggers); }},
      {QT_TRANSLATE_NOOP("MainWidget", "Aliases"),
       QT_TRANSLATE_NOOP("MainWidget", "There has been a failure reading your aliases.txt file."),
       [&] { return files.loadAliases(profile.aliases); }},
      {QT_TRANSLATE_NOOP("MainWidget", "Variables"),
       QT_TRANSLATE_NOOP("MainWidget", "There has been a failure reading your variables.txt file."),
       [&] { return files.loadVariables(variables); }},
  }};
  for (const FileRow& row : rows) {
    if (row.load())
      continue;
    QMessageBox::information(&parent, QCoreApplication::translate("MainWidget", row.title),
                             QCoreApplication::translate("MainWidget", row.failure),
                             QMessageBox::Ok);
  }
  profile.variables.load(variables);
}

}  // namespace kelmora::app

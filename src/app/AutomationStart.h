#pragma once

#include <QMap>
#include <QString>

class QWidget;

namespace kelmora::automation {
class AliasTable;
class MacroTable;
class AutomationFiles;
class TriggerTable;
}  // namespace kelmora::automation

namespace kelmora::app {

/// Fills the four tables from their files, in the order macros, triggers,
/// aliases, variables. Each file that fails is told in a message box over the
/// parent, then the next one is read.
void loadAutomationFiles(QWidget& parent, automation::AutomationFiles& files,
                         automation::MacroTable& macros, automation::TriggerTable& triggers,
                         automation::AliasTable& aliases, QMap<QString, QString>& variables);

}  // namespace kelmora::app

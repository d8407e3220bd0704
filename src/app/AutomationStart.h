#pragma once

#include <QMap>
#include <QString>

class AliasTable;
class AutomationFiles;
class MacroTable;
class QWidget;
class TriggerTable;

/// Fills the four tables from their files, in the order macros, triggers,
/// aliases, variables. Each file that fails is told in a message box over the
/// parent, then the next one is read.
void loadAutomationFiles(QWidget& parent, AutomationFiles& files, MacroTable& macros,
                         TriggerTable& triggers, AliasTable& aliases,
                         QMap<QString, QString>& variables);

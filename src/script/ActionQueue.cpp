#include "script/ActionQueue.h"

#include "script/Interpreter.h"
#include "script/ScriptHost.h"

#include <QTextStream>

void ActionQueue::runActions(const QStringList& actions) {
  QTextStream stream(&host_.gameDevice());
  stream.setAutoDetectUnicode(true);
  for (const QString& action : actions) {
    QString timerId;
    interpreter_.interpretAction(action, stream, timerId);
  }
}

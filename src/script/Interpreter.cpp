#include "script/Interpreter.h"

#include "script/ScriptHost.h"

int Interpreter::interpretAction(QString action, QTextStream& stream, QString& /*timerId*/) {
  if (action.startsWith(u"//")) action.remove(0, 1);
  host_.sendLine(stream, action);
  return 0;
}

#include "script/VariableTable.h"

namespace {

/// Replaces as QString::replace does, but stops where the text has grown past
/// what the table keeps.
QString replacedWithin(const QString& text, const QString& name, const QString& value) {
  QString result;
  qsizetype from = 0;
  qsizetype at = text.indexOf(name);
  for (; at >= 0 && result.size() < VariableTable::maximumLength; at = text.indexOf(name, from)) {
    result += QStringView(text).sliced(from, at - from);
    result += value;
    from = at + name.size();
  }
  result += QStringView(text).sliced(from);
  result.truncate(VariableTable::maximumLength);
  return result;
}

}  // namespace

void VariableTable::set(const QString& name, const QString& value) {
  entries_.insert(name, value.left(maximumLength));
}

QString VariableTable::substituteVariables(const QString& text) const {
  if (!text.contains(u'{'))
    return text;
  QString result = text;
  QString braced;
  for (auto variable = entries_.cbegin(); variable != entries_.cend(); ++variable) {
    braced.resize(0);
    braced.append(u'{').append(variable.key()).append(u'}');
    if (result.contains(braced))
      result = replacedWithin(result, braced, variable.value());
  }
  return result;
}

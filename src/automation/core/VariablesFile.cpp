#include "automation/core/VariablesFile.h"

#include <limits>
#include <optional>

#include "automation/core/TextLines.h"
#include "scan/Format.h"

namespace kelmora::automation {

namespace {

// Name and value are no longer than their line. They are not cut any shorter,
// since loading and saving the variables must not change them.
const scan::Format& lineFormat() {
  static const scan::Format format =
      scan::Format::compile("variable %s \"%[^\"]\"", std::numeric_limits<qsizetype>::max())
          .value();
  return format;
}

}  // namespace

namespace variablesfile {

Reading read(QByteArrayView text, QMap<QString, QString>& variables) {
  TextLines lines(text);
  const auto badLine = [&] { return Reading{Reading::End::BadLine, lines.number()}; };
  while (const std::optional<QByteArrayView> line = lines.next()) {
    const scan::Result found = lineFormat().scan(*line);
    if (found.complete()) {
      const QString name = QString::fromLatin1(found.text(0));
      if (variables.contains(name))
        return badLine();
      variables.insert(name, QString::fromLatin1(found.text(1)));
    } else if (!line->isEmpty()) {
      return badLine();
    }
  }
  return {};
}

QByteArray toText(const QMap<QString, QString>& variables) {
  QByteArray text;
  for (auto variable = variables.cbegin(); variable != variables.cend(); ++variable)
    text.append("\nvariable ")
        .append(variable.key().toLatin1())
        .append(" \"")
        .append(variable.value().toLatin1())
        .append("\"\n");
  return text;
}

}  // namespace variablesfile

}  // namespace kelmora::automation

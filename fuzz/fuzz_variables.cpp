#include <QCoreApplication>
#include <QTextStream>
#include <cstdio>

#include "FuzzTarget.h"
#include "Surroundings.h"
#include "automation/core/AutomationFiles.h"
#include "support/FileText.h"
#include "support/OwnFolder.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

using Variables = QMap<QString, QString>;

/// Reads the file with the toolkit's text stream and the C library's sscanf.
bool readByTheLibraries(const QByteArray& bytes, Variables& variables) {
  QTextStream stream(bytes);
  stream.setEncoding(QStringConverter::Latin1);
  stream.setAutoDetectUnicode(false);
  QString text;
  while (stream.readLineInto(&text)) {
    const QByteArray line = text.toLatin1();
    QByteArray name(line.size() + 1, '\0');
    QByteArray value(line.size() + 1, '\0');
    if (std::sscanf(line.constData(), "variable %s \"%[^\"]\"", name.data(), value.data()) == 2) {
      const QString key = QString::fromLatin1(name.constData());
      if (variables.contains(key))
        return false;
      variables.insert(key, QString::fromLatin1(value.constData()));
    } else if (!line.isEmpty()) {
      return false;
    }
  }
  return true;
}

}  // namespace

/// The input is the whole file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Surroundings<QCoreApplication>::provide();
  const QByteArray bytes = fuzz::bytesOf(data, size);
  fuzz::require(put(automation::variablesPath, bytes), "the file can be made");
  Variables expected;
  const bool success = readByTheLibraries(bytes, expected);
  Variables variables;
  AutomationFiles files;
  fuzz::require(files.loadVariables(variables) == success && variables == expected,
                "the file is read as the libraries read it");

  fuzz::require(files.writeVariables(variables), "the variables can be written");
  const QString backup = automation::variablesPath + QStringLiteral(".bak");
  fuzz::require(QFile::exists(backup) != success && (success || contentsOf(backup) == bytes),
                "a file that was not read to its end is kept, and no other");
  QFile::remove(backup);
  Variables again;
  fuzz::require(AutomationFiles().loadVariables(again) && again == variables,
                "the variables come back from their file");
  fuzz::require(AutomationFiles().loadVariables(again) == variables.isEmpty() && again == variables,
                "a second definition is refused");
  fuzz::require(namesHere().size() == 1, "no other file is left behind");
  return 0;
}

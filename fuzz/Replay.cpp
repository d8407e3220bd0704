#include <QDir>
#include <QFile>

#include "FuzzTarget.h"

/// Stands in for the fuzzer: gives the target every file of a folder, once.
int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  // The targets change into a folder of their own.
  const QDir folder(QDir(QString::fromLocal8Bit(argv[1])).absolutePath());
  const QFileInfoList inputs = folder.entryInfoList(QDir::Files, QDir::Name);
  if (inputs.isEmpty()) {
    std::fprintf(stderr, "There is no input in %s\n", argv[1]);
    return 1;
  }
  for (const QFileInfo& input : inputs) {
    // Said before, so that the last line names the input that ends the process.
    std::printf("%s\n", qPrintable(input.fileName()));
    std::fflush(stdout);
    QFile file(input.absoluteFilePath());
    if (!file.open(QIODevice::ReadOnly)) {
      std::fprintf(stderr, "It cannot be read: %s\n", qPrintable(file.errorString()));
      return 1;
    }
    const QByteArray bytes = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                           static_cast<std::size_t>(bytes.size()));
  }
  std::printf("%lld inputs replayed\n", static_cast<long long>(inputs.size()));
  return 0;
}

#include <QGuiApplication>
#include <QSet>
#include <cstdio>

#include "FuzzTarget.h"
#include "StoredFonts.h"
#include "Surroundings.h"
#include "settings/ClientSettings.h"
#include "settings/SettingsFile.h"
#include "support/FileText.h"

using namespace kelmora;
using namespace kelmora::settings;

namespace {

const QString given = QStringLiteral("given.settings");
const QString written = QStringLiteral("written.settings");
const QString writtenAgain = QStringLiteral("again.settings");

QByteArray exported(const ClientSettings& record, const QString& fileName) {
  fuzz::require(settings::exportSettings(record, fileName), "the options can be written");
  return contentsOf(fileName);
}

/// The keys of a file written by the program.
const QSet<QByteArray>& knownKeys() {
  static const auto keys = [] {
    QSet<QByteArray> all;
    for (const QByteArray& line : exported(ClientSettings(), written).split('\n'))
      all << line.left(line.indexOf(' '));
    return all - QSet<QByteArray>{""};
  }();
  return keys;
}

/// Whether each line has a known key and a value, as the C library reads it.
bool isValid(const QByteArray& bytes) {
  QByteArrayList lines = bytes.split('\n');
  if (lines.last().isEmpty())
    lines.removeLast();
  return std::all_of(lines.begin(), lines.end(), [](const QByteArray& line) {
    std::array<char, 1024> key{};
    std::array<char, 1024> value{};
    return std::sscanf(line.constData(), "%1023s %1023s", key.data(), value.data()) == 2 &&
           knownKeys().contains(key.data());
  });
}

/// A font of two words comes back as its first; a port that is no number not
/// at all.
bool comesBackWhole(const ClientSettings& record) {
  bool isNumber = false;
  const int port = record.proxyPortNumber.toInt(&isNumber);
  return !record.outFont.toString().contains(u' ') && !record.inFont.toString().contains(u' ') &&
         (record.proxyPortNumber.isEmpty() || QString::number(port) == record.proxyPortNumber);
}

}  // namespace

/// The input is the whole file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Surroundings<QGuiApplication>::provide();
  const QByteArray bytes = fuzz::bytesOf(data, size);
  fuzz::require(put(given, bytes), "the file can be made");
  ClientSettings record;
  fuzz::require(settings::importSettings(record, given) == isValid(bytes),
                "a file is good when each of its lines is");
  fuzz::requireUsableFonts(record);

  const QByteArray text = exported(record, written);
  ClientSettings back;
  fuzz::require(settings::importSettings(back, written), "what was written can be read");
  if (comesBackWhole(record)) {
    fuzz::require(back == record, "the options come back from their file");
    fuzz::require(exported(back, writtenAgain) == text, "written again they are the same");
  }
  return 0;
}

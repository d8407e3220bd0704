#include "settings/SettingsFile.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <vector>

#include "files/TextFile.h"
#include "scan/Format.h"
#include "scan/Integer.h"
#include "settings/ClientSettings.h"
#include "settings/SettingsFields.h"
#include "settings/UsableValues.h"

namespace kelmora::settings {

namespace {

/// Bytes; a settings file has some two thousand. What is longer is none, and
/// nobody is made to wait for it.
constexpr qint64 longestFile = 1024 * 1024;
constexpr QByteArrayView emptyText = "(null)";
constexpr auto widthSuffix = ".width";
constexpr auto heightSuffix = ".height";

// Quirk: the name goes through 8 bits and back as UTF-8, so a name outside
// ASCII is another file, for both directions alike.
QString asFileName(const QString& chosen) {
  return QString::fromUtf8(chosen.toLatin1());
}

QByteArray line(const QByteArray& key, const QByteArray& value) {
  return key + ' ' + value + '\n';
}

QByteArray exportedText(const SettingsField& field, const QString& text) {
  switch (field.exportForm) {
    case ExportForm::NullWhenEmpty:
      return text.isEmpty() ? emptyText.toByteArray() : text.toLatin1();
    case ExportForm::Number:
      return QByteArray::number(text.toInt());
    case ExportForm::Plain:
      break;
  }
  return text.toLatin1();
}

QByteArray exportedLines(const ClientSettings& record, const SettingsField& field) {
  const QByteArray key = field.exportKey;
  const QVariant value = storedValue(record, field);
  if (field.kind() == FieldKind::Size)
    return line(key + widthSuffix, QByteArray::number(value.toSize().width())) +
           line(key + heightSuffix, QByteArray::number(value.toSize().height()));
  return line(key, exportedText(field, value.toString()));
}

QString importedText(const SettingsField& field, const QByteArray& value) {
  if (field.exportForm == ExportForm::NullWhenEmpty && value == emptyText)
    return {};
  if (field.exportForm == ExportForm::Number && scan::toInt(value) == 0)
    return {};
  return QString::fromLatin1(value);
}

/// Which part of a field a key of the file names.
enum class Part { Whole, Width, Height };

struct ExportKey {
  const SettingsField* field;
  Part part;
};

const QHash<QByteArray, ExportKey>& exportKeys() {
  static const auto keys = [] {
    QHash<QByteArray, ExportKey> all;
    for (const SettingsField& field : fields()) {
      const QByteArray key = field.exportKey;
      if (field.kind() == FieldKind::Size) {
        all.insert(key + widthSuffix, {&field, Part::Width});
        all.insert(key + heightSuffix, {&field, Part::Height});
      } else {
        all.insert(key, {&field, Part::Whole});
      }
    }
    return all;
  }();
  return keys;
}

/// The value as the store would hold it.
QVariant importedValue(const ClientSettings& record, const ExportKey& key,
                       const QByteArray& value) {
  if (key.part != Part::Whole) {
    QSize size = storedValue(record, *key.field).toSize();
    if (key.part == Part::Width)
      size.setWidth(scan::toInt(value));
    else
      size.setHeight(scan::toInt(value));
    return size;
  }
  const FieldKind kind = key.field->kind();
  if (kind == FieldKind::Flag || kind == FieldKind::Integer)
    return scan::toInt(value);
  return importedText(*key.field, value);
}

bool takeOver(ClientSettings& record, const QByteArray& name, const QByteArray& value) {
  const auto key = exportKeys().constFind(name);
  if (key == exportKeys().cend())
    return false;
  assign(record, *key->field, importedValue(record, *key, value));
  return true;
}

/// Whether the file is ready for a password. A new one is made for its owner
/// alone. An old one is narrowed where the system lets us: a disk may have no
/// permissions, and the file may be another's. One that is protected against
/// writing is left as it is.
bool prepare(QFile& file) {
  constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
  if (!QFileInfo(file).isFile())
    return file.open(QIODevice::ReadWrite, ownerOnly);
  if (!file.open(QIODevice::Append | QIODevice::ExistingOnly))
    return false;
  (void)file.setPermissions(ownerOnly);
  return true;
}

QByteArray exportedFile(const ClientSettings& record) {
  QByteArray text;
  for (const SettingsField* field : fieldsInExportOrder())
    text += exportedLines(record, *field);
  return text;
}

}  // namespace

bool exportSettings(const ClientSettings& record, const QString& fileName) {
  QFile file(asFileName(fileName));
  const QFileInfo before(file);
  const bool isNew = !before.exists();
  if ((!isNew && !before.isFile()) || !prepare(file))
    return false;
  file.close();
  if (files::replace(file.fileName(), exportedFile(record), files::Access::OwnerOnly))
    return true;
  if (isNew)
    file.remove();
  return false;
}

bool importSettings(ClientSettings& record, const QString& fileName) {
  static const auto keyAndValue = scan::Format::compile("%s %s");
  QFile file(asFileName(fileName));
  // A folder has no lines, and a pipe may never send one.
  if (const QFileInfo info(file); info.exists() && !info.isFile())
    return false;
  if (!file.open(QIODevice::ReadOnly) && !file.open(QIODevice::ReadWrite))
    return false;
  const QByteArray content = file.read(longestFile + 1);
  for (qsizetype start = 0; start < content.size();) {
    qsizetype end = content.indexOf('\n', start);
    if (end < 0)
      end = content.size();
    const auto line = QByteArrayView(content).sliced(start, end - start);
    const scan::Result words = keyAndValue->scan(line);
    const bool isWithin = content.size() <= longestFile || end < longestFile;
    if (!isWithin || !words.complete() || !takeOver(record, words.text(0), words.text(1)))
      return false;
    start = end + 1;
  }
  return true;
}

}  // namespace kelmora::settings

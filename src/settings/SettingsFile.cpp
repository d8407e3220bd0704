#include "settings/SettingsFile.h"

#include <QFile>
#include <QHash>
#include <optional>

#include "files/Files.h"
#include "files/Log.h"
#include "scan/Format.h"
#include "scan/Integer.h"
#include "settings/ClientSettings.h"
#include "settings/SettingsFields.h"
#include "settings/UsableValues.h"

namespace kelmora::settings {

namespace {

/// In bytes. A settings file has some two thousand; what is far longer is none,
/// and the player is not made to wait for it.
constexpr qint64 longestFile = qint64{1024} * 1024;
constexpr QByteArrayView emptyText = "(null)";
constexpr auto widthSuffix = ".width";
constexpr auto heightSuffix = ".height";

// Quirk: the name is made Latin-1 and read as UTF-8 again, so that a name with
// letters outside ASCII leads to a file of another name. Export and import agree
// on that other name.
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

/// What a key of the file names: a whole field, or one length of a size.
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

/// The value of a line in the form in which the store would hold it.
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

/// Takes one line over into the record. Answers why it is refused, if it is.
std::optional<const char*> refusalOf(QByteArrayView line, ClientSettings& record) {
  static const auto keyAndValue = scan::Format::compile("%s %s");
  const scan::Result words = keyAndValue->scan(line);
  if (!words.complete())
    return "it is no key with a value";
  const auto key = exportKeys().constFind(words.text(0));
  if (key == exportKeys().cend())
    return "its key is not known";
  assign(record, *key->field, importedValue(record, *key, words.text(1)));
  return std::nullopt;
}

struct RefusedLine {
  int number;  ///< 1 for the first
  const char* why;
};

/// Takes over line after line, and stops at the first that is refused.
std::optional<RefusedLine> takeLines(const files::Contents& file, ClientSettings& record) {
  const QByteArrayView content = file.wholeLines();
  int number = 1;
  for (qsizetype start = 0; start < content.size(); ++number) {
    qsizetype end = content.indexOf('\n', start);
    if (end < 0)
      end = content.size();
    if (const auto why = refusalOf(content.sliced(start, end - start), record))
      return RefusedLine{number, *why};
    start = end + 1;
  }
  return file.whole ? std::nullopt
                    : std::optional(RefusedLine{number, "the file was not read from there on"});
}

/// Makes the file ready to hold a password. A new one is created so that its
/// owner alone can read it. An old one is given those permissions where that is
/// possible: some disks know none, and another user's file keeps its own. False,
/// and nothing changed, where the file is protected against writing.
bool prepare(QFile& file) {
  constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
  if (files::kindOf(file.fileName()) != files::Kind::Ordinary)
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

bool replaceFile(QFile& file, const QByteArray& content) {
  const files::Kind before = files::kindOf(file.fileName());
  const bool isNew = before == files::Kind::Missing;
  if (before == files::Kind::Other || !prepare(file))
    return false;
  file.close();
  const bool written = files::replace(file.fileName(), content, files::Access::OwnerOnly);
  if (!written && isNew)
    file.remove();
  return written;
}

}  // namespace

bool exportSettings(const ClientSettings& record, const QString& fileName) {
  QFile file(asFileName(fileName));
  const bool written = replaceFile(file, exportedFile(record));
  if (!written)
    qCWarning(files::filesLog) << "settings were not exported to" << file.fileName();
  return written;
}

bool importSettings(ClientSettings& record, const QString& fileName) {
  const QString path = asFileName(fileName);
  const auto file = files::readOrCreate(path, longestFile);
  if (!file) {
    qCWarning(files::filesLog) << "no settings were imported: cannot open" << path;
    return false;
  }
  const auto refused = takeLines(*file, record);
  // The line itself is not told: a password may stand in it.
  if (refused)
    qCWarning(files::filesLog) << "the import stopped at line" << refused->number << "of" << path
                               << "because" << refused->why;
  return !refused;
}

}  // namespace kelmora::settings

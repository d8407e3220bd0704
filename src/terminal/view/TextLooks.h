#pragma once

#include <QHash>
#include <QStringView>
#include <QTextCharFormat>
#include <QTextDocument>
#include <optional>

/// What the colour spans around a piece of text make of it.
struct TextLook {
  /// No colour is this one: it would need more than 24 bits.
  static constexpr quint32 none = 0xFF000000;

  quint32 text = none;
  quint32 background = none;
  /// To the toolkit formats that differ only in this are not the same.
  bool backgroundCameFirst = false;

  bool operator==(const TextLook&) const = default;
  /// The look inside a span with such a style attribute; nothing for a style
  /// that the colour translator does not write.
  [[nodiscard]] std::optional<TextLook> inside(QStringView style) const;
};

size_t qHash(const TextLook& look, size_t seed = 0);

/// The character formats of looks. Each is made once by the toolkit's own
/// importer and then kept: of what it is made is the importer's to say.
class TextLooks {
 public:
  /// The style sheet is that of the document which the formats are for.
  explicit TextLooks(const QString& styleSheet);

  [[nodiscard]] QTextCharFormat format(const TextLook& look);
  /// Of a link to such a target.
  [[nodiscard]] QTextCharFormat linkFormat(const TextLook& look, const QString& target);

 private:
  using Formats = QHash<TextLook, QTextCharFormat>;

  [[nodiscard]] const QTextCharFormat& kept(Formats& formats, const TextLook& look,
                                            const QString& body);

  QTextDocument sample_;
  Formats formats_;
  Formats linkFormats_;
};

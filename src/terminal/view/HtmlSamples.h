#pragma once

#include <QStringList>
#include <QTextCursor>
#include <QTextDocument>
#include <optional>

namespace kelmora::terminal {

/// A document of samples, a paragraph each, and what the toolkit writes for
/// them in a document like the one that is given.
class HtmlSamples {
 public:
  // They stand for a text and for a link's target. No game sends them.
  static constexpr QChar textMark{0xE000};
  static constexpr QChar targetMark{0xE001};

  struct Ends {
    QString before = {};
    QString behind = {};
  };

  explicit HtmlSamples(const QTextDocument& like);

  void add(const QString& text, const QTextCharFormat& look = {},
           const QTextBlockFormat& block = {}, const QTextCharFormat& ofBlock = {});
  /// Nothing is added behind it. False where the toolkit does not write a line
  /// for each paragraph.
  [[nodiscard]] bool write();

  // What stands around all paragraphs.
  [[nodiscard]] const QString& head() const { return head_; }
  [[nodiscard]] const QString& tail() const { return tail_; }

  /// The line of the next paragraph.
  [[nodiscard]] QString take() { return lines_.takeFirst(); }
  /// Without what stands around a paragraph that has no format.
  [[nodiscard]] std::optional<QString> takeInner();

  /// What stands around the mark; nothing where it is there more than once.
  [[nodiscard]] static std::optional<Ends> endsOf(const QString& line, QChar mark = textMark);
  /// A mark before, between and behind all letters.
  [[nodiscard]] static QString between(QChar mark, const QString& letters);

 private:
  QTextDocument document_;
  QTextCursor cursor_{&document_};
  QString head_;
  QString tail_;
  Ends plain_;  ///< of a paragraph without any format
  QStringList lines_;
};

}  // namespace kelmora::terminal

#pragma once

#include <QStringList>
#include <QTextCursor>
#include <QTextDocument>
#include <optional>

namespace kelmora::terminal {

/// Lets the toolkit write samples in HTML: add() takes them, write() writes them
/// all, and take() returns the HTML of one after another. Each is a paragraph.
class HtmlSamples {
 public:
  // Marks that stand in a sample for any text and for the target of any link. They
  // are private characters, which no game sends.
  static constexpr QChar textMark{0xE000};
  static constexpr QChar targetMark{0xE001};

  struct Ends {
    QString before = {};
    QString behind = {};
  };

  /// The samples are written with the font and the settings of that document.
  explicit HtmlSamples(const QTextDocument& like);

  void add(const QString& text, const QTextCharFormat& look = {},
           const QTextBlockFormat& block = {}, const QTextCharFormat& ofBlock = {});
  /// Call it once, after the last add(). False if the toolkit does not write one
  /// line for each paragraph.
  [[nodiscard]] bool write();

  // What stands before the first and behind the last paragraph.
  [[nodiscard]] const QString& head() const { return head_; }
  [[nodiscard]] const QString& tail() const { return tail_; }

  /// The line of HTML of the next sample.
  [[nodiscard]] QString take() { return lines_.takeFirst(); }
  /// The same without the tags of its paragraph, which must have no format; nothing
  /// if the line does not have them.
  [[nodiscard]] std::optional<QString> takeInner();

  /// What stands before and behind the mark; nothing unless it is there just once.
  [[nodiscard]] static std::optional<Ends> endsOf(const QString& line, QChar mark = textMark);
  /// The letters with a mark before, between and behind them.
  [[nodiscard]] static QString between(QChar mark, const QString& letters);

 private:
  QTextDocument document_;
  QTextCursor cursor_{&document_};
  QString head_;
  QString tail_;
  Ends plain_;  ///< what is written around a paragraph without any format
  QStringList lines_;
};

}  // namespace kelmora::terminal

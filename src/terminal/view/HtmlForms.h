#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>
#include <vector>

#include "terminal/view/DocumentRuns.h"

class QTextDocument;

namespace kelmora::terminal {

/// What the toolkit writes for the paragraphs, the looks and the letters of a
/// document, learned from samples of each that it has written. All of it is in
/// the bytes of a saved session.
class HtmlForms {
 public:
  /// What stands around a text.
  struct Ends {
    QByteArray before = {};
    QByteArray behind = {};
  };
  /// How letters are written. Most of the first 128 are themselves.
  class Letters {
   public:
    void learn(char16_t letter, const QByteArray& written);
    void append(QByteArray& bytes, QStringView text) const;

   private:
    bool isItself_[128] = {};
    QHash<char16_t, QByteArray> others_ = {};
  };

  /// Nothing where the samples leave a doubt.
  [[nodiscard]] static std::optional<HtmlForms> learn(const QTextDocument& document,
                                                      const DocumentRuns& content);

  /// Characters outside Latin-1 become "?", then the bytes are UTF-8.
  [[nodiscard]] static QByteArray bytesOf(const QString& html);

  /// Around all paragraphs.
  [[nodiscard]] const Ends& page() const { return page_; }
  [[nodiscard]] const Ends& around(const DocumentRuns::Paragraph& paragraph) const;
  [[nodiscard]] const Ends& around(const DocumentRuns::Run& run) const;
  [[nodiscard]] const Letters& letters() const { return letters_; }

 private:
  class Teacher;
  using ParagraphKind = std::pair<std::pair<int, int>, bool>;

  [[nodiscard]] static ParagraphKind kindOf(const DocumentRuns::Paragraph& paragraph);

  Ends page_ = {};
  Letters letters_ = {};
  QHash<ParagraphKind, Ends> paragraphs_ = {};
  std::vector<Ends> runs_ = {};  ///< by format, empty for those out of use
};

}  // namespace kelmora::terminal

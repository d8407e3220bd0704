#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>
#include <vector>

#include "terminal/session/DocumentRuns.h"

class QTextDocument;

namespace kelmora::terminal {

/// The HTML that the toolkit writes for the paragraphs, the formats and the
/// characters of a document. It is learned by having the toolkit write a sample
/// of each. All HTML here is in the encoding of a saved session: see bytesOf().
class HtmlForms {
 public:
  /// What is written before and behind a text.
  struct Ends {
    QByteArray before = {};
    QByteArray behind = {};
  };
  /// How characters are written. Most of the first 128 are written as themselves.
  class Letters {
   public:
    void learn(char16_t letter, const QByteArray& written);
    void append(QByteArray& bytes, QStringView text) const;

   private:
    bool isItself_[128] = {};
    QHash<char16_t, QByteArray> others_ = {};
  };

  /// Nothing if what the toolkit wrote for the samples is not as expected.
  [[nodiscard]] static std::optional<HtmlForms> learn(const QTextDocument& document,
                                                      const DocumentRuns& content);

  /// Characters outside Latin-1 become "?", then the bytes are UTF-8.
  [[nodiscard]] static QByteArray bytesOf(const QString& html);

  /// What stands before the first and behind the last paragraph.
  [[nodiscard]] const Ends& page() const { return page_; }
  [[nodiscard]] const Ends& around(const DocumentRuns::Paragraph& paragraph) const;
  [[nodiscard]] const Ends& around(const DocumentRuns::Run& run) const;
  [[nodiscard]] const Letters& letters() const { return letters_; }

 private:
  class Learner;
  using ParagraphKind = std::pair<std::pair<int, int>, bool>;

  [[nodiscard]] static ParagraphKind kindOf(const DocumentRuns::Paragraph& paragraph);

  Ends page_ = {};
  Letters letters_ = {};
  QHash<ParagraphKind, Ends> paragraphs_ = {};
  std::vector<Ends> runs_ = {};  ///< by format index; empty for formats out of use
};

}  // namespace kelmora::terminal

#pragma once

#include <QByteArrayView>
#include <QStringView>

/// How many paragraphs a stream of server text makes at least, by a quick look
/// that decodes nothing. A paragraph that has reached a length ends with its
/// line: text that turns out longer than it was taken for here can only end
/// its paragraphs sooner. A text with paragraphs of its own counts as none: only
/// the last of them is continued in a new one where it is long.
class ParagraphCount {
 public:
  /// The length in characters.
  explicit ParagraphCount(qsizetype longParagraph) : longParagraph_(longParagraph) {}

  /// Lines as the triggers see them, of a read without tags of the server. For
  /// ordinary text the count is a few per cent short.
  void addLines(QByteArrayView plain);
  /// HTML that safeMarkup() has seen. Answers whether it has nothing but inline
  /// tags and line breaks; other tags may go on working on what follows.
  [[nodiscard]] bool addMarkup(QStringView html);
  /// Paragraphs that end for certain.
  void addParagraphs(qint64 count);

  [[nodiscard]] qint64 ended() const { return ended_; }

 private:
  /// Part of a line, with as many characters at least.
  void addPart(qsizetype characters);
  void endLine();

  qsizetype longParagraph_;
  qsizetype length_ = 0;
  qint64 ended_ = 0;
};

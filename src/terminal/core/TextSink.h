#pragma once

#include <optional>

#include "terminal/core/ByteWalk.h"
#include "terminal/core/StyledText.h"

namespace kelmora::terminal {

/// Makes text and its runs of a read without tags of the server: what the
/// toolkit's importer would make of the read's HTML, which is never written.
///
/// Only in a segment, a stretch without a line end or a span, that has an "&" or
/// a web address the HTML has its say: that segment goes the long way, by HTML.
class TextSink final : public ReadSink {
 public:
  TextSink(qsizetype bytes, const PipelineOptions& options);

  [[nodiscard]] qsizetype takeRun(QByteArrayView rest);
  void addByte(char byte, bool insideTag);
  void endLine();
  void openSpan(const ColourSpan& span) override;
  void addBareColour(QByteArrayView colour) override;

  /// Nothing where something in it is the importer's to say.
  [[nodiscard]] std::optional<StyledText> text() &&;

 private:
  /// What a segment ends with.
  enum class Follows { LineEnd, Span, Nothing };
  /// Blanks in a row show as one, and none are shown where a line begins.
  enum class Blanks { Kept, Dropped };
  struct Segment {
    qsizetype line = 0;  ///< where it begins in the plain lines
    Blanks blanks = Blanks::Dropped;
    /// The importer has to be asked what it means, or somebody who knows.
    bool hasAmpersand = false;
    bool mayHaveLink = false;
    qsizetype text = 0;
  };

  void add(char16_t character);
  void addSoftBlank();
  void addHardBlank() { add(QChar::Nbsp); }
  /// Two blanks in a row keep their width: the second of a pair is a hard one.
  void addBlank();
  /// Decodes the bytes beyond ASCII that have come.
  void addWide();
  void addDecoded(QStringView text);

  void endSegment(Follows follows);
  void beginSegment();
  [[nodiscard]] QByteArrayView plainSegment() const {
    return {lines.begin() + segment_.line, lines.size() - segment_.line};
  }
  /// Does so where the segment is one plain letter after another but for it.
  [[nodiscard]] bool addOnlyLink();
  [[nodiscard]] bool needsHtml();
  /// With the tag behind it, which says where a last entity ends.
  [[nodiscard]] QString segmentHtml(Follows follows) const;
  /// Answers false where the importer has to decide.
  [[nodiscard]] bool addHtml(const QString& html);
  void endRun(const QString& target = {});

  PipelineOptions options_;
  TextBuffer<QString> text_;
  std::vector<StyledText::Run> runs_;
  TextLook look_;
  Blanks blanks_ = Blanks::Dropped;
  /// The last blank has no second yet.
  bool inPair_ = false;
  /// Bytes beyond ASCII, which may go on behind what is dropped.
  QByteArray wide_;
  Segment segment_;
  std::vector<qsizetype> tabs_;  ///< of the segment, in the plain lines
  bool isImporters_ = false;
};

}  // namespace kelmora::terminal

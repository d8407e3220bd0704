#pragma once

#include <optional>

#include "terminal/core/ByteWalk.h"
#include "terminal/core/StyledText.h"

namespace kelmora::terminal {

/// Turns a read without tags of the server into text with its looks. The result is
/// what the toolkit's importer would make of the read's HTML, but without writing
/// that HTML.
///
/// The exceptions are segments (stretches without a line end or a change of colour)
/// with an "&" or a web address: those are written as HTML and read from that.
class TextSink final : public ReadSink {
 public:
  TextSink(qsizetype bytes, const PipelineOptions& options);

  [[nodiscard]] qsizetype takeRun(QByteArrayView rest);
  void addByte(char byte, bool insideTag);
  void endLine();
  void openSpan(const ColourSpan& span) override;
  void addBareColour(QByteArrayView colour) override;

  /// Nothing if only the importer can find out what some part of the read shows.
  [[nodiscard]] std::optional<StyledText> text() &&;

 private:
  /// What a segment ends with.
  enum class Follows { LineEnd, Span, Nothing };
  /// Whether the next blank is shown. As in HTML, it is not behind another blank or
  /// at the beginning of a line.
  enum class Blanks { Kept, Dropped };
  struct Segment {
    qsizetype line = 0;               ///< where it begins in the plain lines
    qsizetype text = 0;               ///< where it begins in the text
    Blanks blanks = Blanks::Dropped;  ///< at its beginning
    bool hasAmpersand = false;
    bool mayHaveLink = false;
  };

  void add(char16_t character);
  void addSoftBlank();
  void addHardBlank() { add(QChar::Nbsp); }
  /// Adds the next of several blanks. Every second one is hard, so that they keep
  /// their width.
  void addBlank();
  /// Decodes the bytes outside ASCII that have been collected.
  void addWide();
  void addDecoded(QStringView text);

  void endSegment(Follows follows);
  void beginSegment();
  [[nodiscard]] QByteArrayView plainSegment() const {
    return {lines.begin() + segment_.line, lines.size() - segment_.line};
  }
  /// Makes a link of the segment's only web address without writing HTML. Returns
  /// false if that cannot be done, because the segment is not simple enough.
  [[nodiscard]] bool addOnlyLink();
  [[nodiscard]] bool needsHtml();
  /// With the tag that follows the segment, which may decide where its last entity
  /// ends.
  [[nodiscard]] QString segmentHtml(Follows follows) const;
  /// Returns false if only the importer can find out what the HTML shows.
  [[nodiscard]] bool addHtml(const QString& html);
  void endRun(const QString& target = {});

  PipelineOptions options_;
  TextBuffer<QString> text_;
  std::vector<StyledText::Run> runs_;
  TextLook look_;
  Blanks blanks_ = Blanks::Dropped;
  /// Whether the last blank was a soft one, so that another one would be hard.
  bool inPair_ = false;
  /// Bytes outside ASCII that are not decoded yet: bytes that are dropped, such as
  /// carriage returns, may divide a character.
  QByteArray undecoded_;
  Segment segment_;
  std::vector<qsizetype> tabs_;  ///< where the segment's tabs are in the plain lines
  /// Whether only the importer can find out what some part of the read shows.
  bool needsImporter_ = false;
};

}  // namespace kelmora::terminal

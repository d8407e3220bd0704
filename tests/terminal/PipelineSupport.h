#pragma once

#include <QByteArray>
#include <QList>
#include <array>

#include "LiteralPipeline.h"
#include "LiteralText.h"
#include "terminal/core/OutputPipeline.h"

using namespace kelmora;
using namespace kelmora::terminal;

inline const AnsiTranslator::ColourTexts normalColours{"#000000", "#660000", "#006600", "#666600",
                                                       "#000066", "#660066", "#006666", "#bdbdbd"};
inline const AnsiTranslator::ColourTexts boldColours{"#333333", "#ff0000", "#00ff00", "#ffff00",
                                                     "#0000ff", "#ff00ff", "#00ffff", "#ffffff"};
inline const QByteArray resetSpan = "<span style=\"color:#bdbdbd;background-color:#000000\">";

/// What is shown of a read, as a text for comparison: its runs, or its HTML.
inline QByteArray toldOf(const ServerText& text) {
  if (const auto* styled = std::get_if<StyledText>(&text))
    return "text: " + LiteralText::told(*styled);
  QByteArray html = "HTML: ";
  for (const SafeHtml& piece : std::get<std::vector<SafeHtml>>(text))
    html += piece.html().toUtf8();
  return html;
}
/// What must be shown for some HTML: text where possible, otherwise that HTML.
inline QByteArray toldOf(const QString& html, bool hasTags, bool isLong = false) {
  if (const auto text = hasTags ? std::nullopt : LiteralText::of(html))
    return "text: " + LiteralText::told(*text);
  return toldOf(isLong ? safeMarkupPieces(html, 8192) : std::vector{safeMarkup(html)});
}

/// A window that records how it is called.
class RecordingHost : public PipelineHost {
 public:
  void beep() override { events << Event{Event::Kind::Beep, {}}; }
  void showServerText(ServerText text) override {
    events << Event{Event::Kind::Html, toldOf(text)};
    texts << std::move(text);
  }
  void parseVitals(const char* line) override { events << Event{Event::Kind::Vitals, line}; }
  void checkTriggers(const QByteArray& line) override {
    events << Event{Event::Kind::Triggers, line};
  }

  [[nodiscard]] QList<QByteArray> all(Event::Kind kind) const {
    QList<QByteArray> found;
    for (const Event& event : events)
      if (event.kind == kind)
        found << event.bytes;
    return found;
  }
  [[nodiscard]] QByteArray shown() const { return all(Event::Kind::Html).join(); }
  [[nodiscard]] QList<QByteArray> lines() const { return all(Event::Kind::Triggers); }

  QList<Event> events;
  QList<ServerText> texts;
};

inline constexpr PipelineOptions plainText{
    .displayAnsiColor = true, .playBeeps = true, .parseHtml = false, .displayURLs = false};
inline constexpr PipelineOptions markup{
    .displayAnsiColor = true, .playBeeps = true, .parseHtml = true, .displayURLs = false};

/// A pipeline with colours and the window it talks to.
struct Client {
  Client() { pipeline.translator().buildColourSpans(normalColours, boldColours); }

  void read(const QByteArray& data, const PipelineOptions& options = plainText) {
    host.events.clear();
    pipeline.readSocketData(data, options, host);
  }
  /// What was shown of the last read.
  [[nodiscard]] QByteArray shown() const { return host.shown(); }
  /// What must be shown for that HTML behind the span with which a read begins.
  [[nodiscard]] QByteArray shownOf(const QByteArray& html,
                                   const QByteArray& reopened = resetSpan) const {
    return toldOf(QString::fromUtf8(reopened + html), shown().startsWith("HTML"));
  }

  OutputPipeline pipeline;
  RecordingHost host;
};

/// What the window must be handed for a read, according to the literal pipeline.
inline QList<Event> expectedOf(LiteralPipeline& pipeline, const QByteArray& data,
                               const PipelineOptions& options) {
  QList<Event> events = pipeline.read(data, options);
  for (Event& event : events)
    if (event.kind == Event::Kind::Html)
      event.bytes = toldOf(QString::fromUtf8(event.bytes), pipeline.hadTags, data.size() > 8192);
  return events;
}

#pragma once

#include <QByteArray>
#include <QList>
#include <array>

#include "LiteralPipeline.h"
#include "terminal/core/OutputPipeline.h"

inline const AnsiTranslator::ColourTexts normalColours{"#000000", "#660000", "#006600", "#666600",
                                                       "#000066", "#660066", "#006666", "#bdbdbd"};
inline const AnsiTranslator::ColourTexts boldColours{"#333333", "#ff0000", "#00ff00", "#ffff00",
                                                     "#0000ff", "#ff00ff", "#00ffff", "#ffffff"};
inline const QByteArray resetSpan = "<span style=\"color:#bdbdbd;background-color:#000000\">";

/// A window that writes down what it is asked.
class RecordingHost : public PipelineHost {
 public:
  void beep() override { events << Event{Event::Kind::Beep, {}}; }
  void showServerText(ServerText text) override {
    events << Event{Event::Kind::Html, text.decoded().toUtf8()};
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
  [[nodiscard]] QByteArray html() const { return all(Event::Kind::Html).join(); }
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
  /// The HTML of the last read without the span that it reopens.
  [[nodiscard]] QByteArray html(const QByteArray& reopened = resetSpan) const {
    const QByteArray whole = host.html();
    return whole.startsWith(reopened) ? whole.mid(reopened.size()) : "not reopened: " + whole;
  }

  OutputPipeline pipeline;
  RecordingHost host;
};

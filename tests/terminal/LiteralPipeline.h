#pragma once

#include <QByteArray>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <array>
#include <cstdio>
#include <string>
#include <utility>

#include "terminal/core/OutputPipeline.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// All that the pipeline hands to the window, in order.
struct Event {
  enum class Kind { Beep, Html, Vitals, Triggers };
  Kind kind;
  QByteArray bytes;
  bool operator==(const Event&) const = default;
};

/// A second pipeline that follows the rules as literally as possible, however slow:
/// one byte at a time, texts identified by their addresses, numbers read anew from the
/// whole text each time. The real one must give the same results.
class LiteralPipeline {
 public:
  using Colours = AnsiTranslator::ColourTexts;

  void buildColourSpans(const Colours& normal, const Colours& bold) {
    for (std::size_t k = 0; k < 8; ++k) {
      normalColour_[k] = normal[k].toStdString();
      normalSpan_[k] = "<span style=\"color:" + normalColour_[k] + "\">";
      boldSpan_[k] = "<span style=\"color:" + bold[k].toStdString() + "\">";
      backgroundSpan_[k] = "<span style=\"background-color:" + normalColour_[k] + "\">";
    }
    resetSpan_ =
        "<span style=\"color:" + normalColour_[7] + ";background-color:" + normalColour_[0] + "\">";
    currentSpan = resetSpan_.c_str();
    currentForeground_ = normalColour_[7].c_str();
  }
  void clearBold() { boldActive = false; }

  QList<Event> read(const QByteArray& data, const PipelineOptions& options) {
    QList<Event> events;
    hadTags = options.parseHtml && (insideTag || data.contains('<'));
    QByteArray html;
    QByteArray pendingLineText;
    bool beep = false;
    if (currentSpan)
      html += currentSpan;
    for (qsizetype index = 0; index < data.size(); ++index) {
      if (escapePending) {
        index = index - 1;
        translateEscape(index, data, html, options.displayAnsiColor);
        continue;
      }
      const auto c = static_cast<unsigned char>(data.at(index));
      if (c == 0xFF) {
        index += 2;
      } else if (c == 0x07) {
        if (options.playBeeps)
          beep = true;
      } else if (c == 0x09) {
        if (options.parseHtml && insideTag)
          html += "&nbsp;&nbsp;&nbsp;&nbsp;";
        else
          html += "<tab>";
        pendingLineText += "&nbsp;&nbsp;&nbsp;&nbsp;";
      } else if (c == 0x0A) {
        html += "<br>\n";
        pendingLineText += "\n";
      } else if (c == 0x0D) {
        continue;
      } else if (c == 0x1B) {
        translateEscape(index, data, html, options.displayAnsiColor);
      } else if (c == 0x20) {
        html += options.parseHtml && insideTag ? " " : "&#32;";
        pendingLineText += " ";
      } else if (c == '<') {
        html += options.parseHtml ? "<" : "<lt>";
        if (options.parseHtml)
          insideTag = true;
        pendingLineText += "<";
      } else if (c == '>') {
        html += options.parseHtml ? ">" : "<gt>";
        if (options.parseHtml)
          insideTag = false;
        pendingLineText += ">";
      } else {
        html += static_cast<char>(c);
        pendingLineText += static_cast<char>(c);
      }
    }
    QString text = QString::fromUtf8(html);
    if (options.displayURLs)
      text = linked(text);
    text = resolved(text);
    lastHtml = text;
    if (beep)
      events << Event{Event::Kind::Beep, {}};
    events << Event{Event::Kind::Html, text.toUtf8()};
    for (const QByteArray& piece : pendingLineText.split('\n')) {
      events << Event{Event::Kind::Vitals, QByteArray(piece.constData())};
      events << Event{Event::Kind::Triggers, piece};
    }
    return events;
  }

  /// The HTML of one read.
  QString htmlOf(const QByteArray& data, const PipelineOptions& options) {
    (void)read(data, options);
    return lastHtml;
  }

  static QString linked(QString text) {
    static const std::array<std::pair<QRegularExpression, const char*>, 7> steps{{
        {QRegularExpression(R"(([wW]ww\.)+)"), "http://www."},
        {QRegularExpression(R"(([hH]ttps://[hH]ttp://)+)"), "https://"},
        {QRegularExpression(R"(([hH]ttps://[hH]ttps://)+)"), "https://"},
        {QRegularExpression(R"(([hH]ttp://[hH]ttps://)+)"), "http://"},
        {QRegularExpression(R"(([hH]ttp://[hH]ttp://)+)"), "http://"},
        {QRegularExpression(R"(([hH]ttps://)+([a-zA-Z0-9%&#=\+\?/\.\-_\s*]+))"),
         R"(<a href="https://\2">https://\2</a>)"},
        {QRegularExpression(R"(([hH]ttp://)+([a-zA-Z0-9%&#=\+\?/\.\-_\s*]+))"),
         R"(<a href="http://\2">http://\2</a>)"},
    }};
    for (const auto& [pattern, replacement] : steps)
      text.replace(pattern, QLatin1String(replacement));
    return text;
  }

  static QString resolved(QString text) {
    text.replace(QLatin1String("<space>"), QLatin1String("&#32;"), Qt::CaseSensitive);
    text.replace(QLatin1String("<tab>"), QLatin1String("&#32;&nbsp;&#32;&nbsp;"),
                 Qt::CaseSensitive);
    text.replace(QLatin1String("&#32;&#32;"), QLatin1String("&#32;&nbsp;"), Qt::CaseSensitive);
    text.replace(QLatin1String("<lt>"), QLatin1String("&lt;"), Qt::CaseSensitive);
    text.replace(QLatin1String("<gt>"), QLatin1String("&gt;"), Qt::CaseSensitive);
    return text;
  }

  /// Whether the last read may have had tags of the server in it.
  bool hadTags = false;
  QString lastHtml;
  bool insideTag = false;
  bool escapePending = false;
  bool boldActive = false;
  const char* currentSpan = nullptr;

 private:
  /// An address that stays valid, because the current colour is identified by it.
  static const char* paletteText(quint32 n) {
    static const std::array<std::string, 256> texts = [] {
      std::array<std::string, 256> made;
      static constexpr std::array<const char*, 16> first{
          "#000000", "#800000", "#008000", "#808000", "#000080", "#800080", "#008080", "#c0c0c0",
          "#808080", "#ff0000", "#00ff00", "#ffff00", "#0000ff", "#ff00ff", "#00ffff", "#ffffff"};
      static constexpr std::array<const char*, 6> level{"00", "5f", "87", "af", "d7", "ff"};
      for (std::size_t k = 0; k < 256; ++k) {
        if (k < 16) {
          made[k] = first[k];
        } else if (k < 232) {
          const std::size_t cube = k - 16;
          made[k] = std::string("#") + level[cube / 36] + level[cube / 6 % 6] + level[cube % 6];
        } else {
          std::array<char, 8> grey{};
          const unsigned shade = 8 + 10 * static_cast<unsigned>(k - 232);
          std::snprintf(grey.data(), grey.size(), "#%02x%02x%02x", shade, shade, shade);
          made[k] = grey.data();
        }
      }
      return made;
    }();
    return n < 256 ? texts[n].c_str() : nullptr;
  }

  void translateEscape(qsizetype& index, const QByteArray& data, QByteArray& html, bool display) {
    QByteArray param;
    QByteArray ext;
    escapePending = true;
    if (index + 1 >= data.size())
      return;
    index++;
    if (data.at(index) == 'm') {
      escapePending = false;
      return;
    }
    bool fgExtended = false;
    bool bgExtended = false;
    for (;;) {
      if (index + 1 >= data.size())
        return;
      index++;
      const char c = data.at(index);
      if (!fgExtended && !bgExtended) {
        if (c != ';' && c != 'm') {
          param.append(c);
          continue;
        }
        if (display)
          applyCode(param.toInt() & 0xFF, html, fgExtended, bgExtended);
        if (c == 'm')
          break;
        continue;
      }
      if (param != (fgExtended ? "385;" : "485;")) {
        param.append(c);
        if (c == 'm')
          break;
        continue;
      }
      if (c != 'm') {
        ext.append(c);
        continue;
      }
      const char* colour = paletteText(static_cast<quint32>(ext.toInt()));
      if (colour && fgExtended) {
        html += QByteArray("<span style=\"color:") + colour + "\">";
        currentForeground_ = colour;
        currentSpan = colour;
      } else if (colour) {
        html += QByteArray("<span style=\"background-color:") + colour + "\">";
      }
      break;
    }
    escapePending = false;
  }

  void applyCode(int code, QByteArray& html, bool& fgExtended, bool& bgExtended) {
    if (code == 0) {
      html += resetSpan_.c_str();
      boldActive = false;
      currentSpan = resetSpan_.c_str();
    } else if (code == 1) {
      boldActive = true;
      for (std::size_t k = 0; k < 8; ++k)
        if (currentForeground_ == normalColour_[k].c_str())
          html += boldSpan_[k].c_str();
    } else if (code >= 30 && code <= 37) {
      const auto k = static_cast<std::size_t>(code - 30);
      currentForeground_ = normalColour_[k].c_str();
      currentSpan = boldActive ? boldSpan_[k].c_str() : normalSpan_[k].c_str();
      html += currentSpan;
    } else if (code == 38) {
      fgExtended = true;
    } else if (code >= 40 && code <= 47) {
      currentSpan = backgroundSpan_[static_cast<std::size_t>(code - 40)].c_str();
      html += currentSpan;
    } else if (code == 48) {
      bgExtended = true;
    }
  }

  std::array<std::string, 8> normalColour_;
  std::array<std::string, 8> normalSpan_;
  std::array<std::string, 8> boldSpan_;
  std::array<std::string, 8> backgroundSpan_;
  std::string resetSpan_;
  const char* currentForeground_ = nullptr;
};

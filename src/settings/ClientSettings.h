#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFont>
#include <QSize>
#include <QString>
#include <algorithm>
#include <array>
#include <cstddef>

namespace kelmora::settings {

/// One colour as text, "#rrggbb": a zero-terminated buffer of eight bytes.
/// The text is not checked for form, only for length.
class ColourText {
 public:
  static constexpr std::size_t capacity = 7;

  constexpr ColourText() = default;
  explicit ColourText(QByteArrayView text) { assign(text); }

  /// Takes the text up to its first NUL, cut to seven characters.
  void assign(QByteArrayView text) {
    buffer_.fill('\0');
    const auto room = std::min(static_cast<std::size_t>(text.size()), capacity);
    const auto end = std::find(text.begin(), text.begin() + room, '\0');
    std::copy(text.begin(), end, buffer_.begin());
  }

  [[nodiscard]] QByteArray text() const { return QByteArray(buffer_.data()); }

  /// The zero-terminated text; valid as long as this object.
  [[nodiscard]] const char* data() const { return buffer_.data(); }

  friend bool operator==(const ColourText&, const ColourText&) = default;

 private:
  std::array<char, capacity + 1> buffer_{};
};

/// The eight ANSI colours.
enum class Colour : std::size_t { Black, Red, Green, Yellow, Blue, Magenta, Cyan, White };

/// A text for each of them, in their order.
using ColourTexts = std::array<ColourText, 8>;

/// Every option that outlives a session. A new record holds the defaults, which
/// stand in the table of fields (SettingsFields.h).
struct ClientSettings {
  ClientSettings();

  friend bool operator==(const ClientSettings&, const ClientSettings&) = default;

  QFont outFont;
  QFont inFont;
  QSize iconSize;  ///< pixels, as stored; see usableIconSize
  bool displayAnsiColor = false;
  bool displayLocalEcho = false;
  bool playBeeps = false;
  bool parseHtml = false;
  bool flushInput = false;
  bool useProxyServer = false;
  bool displayURLs = false;
  bool splitInput = false;
  QString splitString;
  QString hostName;
  int port = 0;       ///< kept whole; the connection uses its low 16 bits
  int proxyType = 0;  ///< a QNetworkProxy::ProxyType value, as stored
  QString proxyHostName;
  QString proxyPortNumber;  ///< text as typed, also when it is no number
  QString proxyUserName;
  QString proxyPassword;   ///< plain text
  QString interfaceStyle;  ///< a widget style name, possibly unknown to the toolkit
  ColourTexts normalColour;
  ColourTexts boldColour;
};

}  // namespace kelmora::settings

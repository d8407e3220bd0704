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

/// One colour as text, such as "#5E610B", in eight bytes with a zero at the end.
/// Its length is limited, but any text is taken: it need not look like a colour.
class ColourText {
 public:
  static constexpr std::size_t capacity = 7;  // characters

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

  /// The text with a zero at its end; valid as long as this object.
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
  int port = 0;       ///< any int; the connection uses its low 16 bits
  int proxyType = 0;  ///< a QNetworkProxy::ProxyType value, as stored
  QString proxyHostName;
  QString proxyPortNumber;  ///< as typed, which need not be a number
  QString proxyUserName;
  QString proxyPassword;   ///< not encrypted
  QString interfaceStyle;  ///< a widget style name, possibly unknown to the toolkit
  ColourTexts normalColour;
  ColourTexts boldColour;
};

}  // namespace kelmora::settings

#include "terminal/core/Links.h"

#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <string_view>

namespace kelmora::terminal {

namespace {

/// Each step's matches all contain one of these texts, which are far cheaper to find.
constexpr const char* host = "ww.";
constexpr const char* plainScheme = "ttp://";
constexpr const char* secureScheme = "ttps://";

struct LinkStep {
  QString needle;
  QRegularExpression pattern;
  QString replacement;
};

LinkStep step(const char* needle, const char* pattern, const char* replacement) {
  LinkStep made{QString::fromLatin1(needle), QRegularExpression(QString::fromLatin1(pattern)),
                QString::fromLatin1(replacement)};
  made.pattern.optimize();
  return made;
}

/// The first step puts a scheme before every "www.", even if there is one already;
/// the next four remove doubled schemes; the last two make links. Their order, and
/// that an address may contain blanks, "*", "&" and "#", are quirks of this client.
/// The expression engine gives up at once on some ten thousand schemes in a row; that
/// step then leaves the rest of the text unchanged.
const std::array<LinkStep, 7>& linkSteps() {
  static const std::array<LinkStep, 7> steps{
      step(host, R"(([wW]ww\.)+)", "http://www."),
      step(secureScheme, R"(([hH]ttps://[hH]ttp://)+)", "https://"),
      step(secureScheme, R"(([hH]ttps://[hH]ttps://)+)", "https://"),
      step(plainScheme, R"(([hH]ttp://[hH]ttps://)+)", "http://"),
      step(plainScheme, R"(([hH]ttp://[hH]ttp://)+)", "http://"),
      step(secureScheme, R"(([hH]ttps://)+([a-zA-Z0-9%&#=\+\?/\.\-_\s*]+))",
           R"(<a href="https://\2">https://\2</a>)"),
      step(plainScheme, R"(([hH]ttp://)+([a-zA-Z0-9%&#=\+\?/\.\-_\s*]+))",
           R"(<a href="http://\2">http://\2</a>)"),
  };
  return steps;
}

/// Whether a byte may be part of an address. Leaves out "&" and blanks, which the
/// caller looks at.
bool isOfAddress(char byte) {
  return (byte >= '0' && byte <= '9') || ((byte | 0x20) >= 'a' && (byte | 0x20) <= 'z') ||
         std::string_view("%#=+?/.-_*").find(byte) != std::string_view::npos;
}

struct Placeholder {
  QStringView before;
  QStringView after;
};

/// In this order, because the third also applies to blanks made by the first two.
constexpr std::array<Placeholder, 5> placeholders{{
    {u"<space>", u"&#32;"},
    {u"<tab>", u"&#32;&nbsp;&#32;&nbsp;"},
    {u"&#32;&#32;", u"&#32;&nbsp;"},
    {u"<lt>", u"&lt;"},
    {u"<gt>", u"&gt;"},
}};

/// Copies each character once. QString::replace() moves the rest of the text again
/// and again when there are many thousand matches.
void replaceAll(QString& text, const Placeholder& placeholder) {
  qsizetype match = text.indexOf(placeholder.before);
  if (match < 0)
    return;
  QString replaced;
  replaced.reserve(text.size());
  const QStringView source = text;
  qsizetype done = 0;
  for (; match >= 0; match = source.indexOf(placeholder.before, done)) {
    replaced.append(source.sliced(done, match - done)).append(placeholder.after);
    done = match + placeholder.before.size();
  }
  replaced.append(source.sliced(done));
  text = std::move(replaced);
}

}  // namespace

bool mayHaveLinks(QByteArrayView plain) {
  const std::string_view text(plain.data(), static_cast<std::size_t>(plain.size()));
  const auto holds = [text](const char* needle) { return text.find(needle) != text.npos; };
  return holds(host) || holds(plainScheme) || holds(secureScheme);
}

std::optional<OnlyLink> onlyLink(QByteArrayView plain) {
  constexpr std::string_view mark = "://";
  const std::string_view text(plain.data(), static_cast<std::size_t>(plain.size()));
  const auto place = text.find(mark);
  if (place == text.npos || text.find(mark, place + 1) != text.npos || text.find(host) != text.npos)
    return std::nullopt;
  const std::string_view before = text.substr(0, place);
  const bool isSecure = before.ends_with("ttps");
  const std::size_t length = isSecure ? 5 : 4;
  if (place < length || !(isSecure || before.ends_with("ttp")) ||
      (before[place - length] | 0x20) != 'h')
    return std::nullopt;
  const std::string_view rest = text.substr(place + mark.size());
  auto end = std::find_if_not(rest.begin(), rest.end(), isOfAddress);
  QString target = (isSecure ? QStringLiteral("https://") : QStringLiteral("http://")) +
                   QString::fromLatin1(rest.data(), end - rest.begin());
  char16_t behind = u'\0';
  if (end != rest.end() && *end == ' ') {
    // Quirk: the link includes the "&#32" of the blank's "&#32;".
    target += u"&#32";
    behind = u';';
    ++end;
    if (end != rest.end() && *end == ' ')
      return std::nullopt;
  }
  const bool mayGoOn = end != rest.end() && static_cast<unsigned char>(*end) < ' ';
  if (mayGoOn || end == rest.begin())
    return std::nullopt;
  const auto start = static_cast<qsizetype>(place - length);
  return OnlyLink{start, plain.size() - (rest.end() - end), std::move(target), behind};
}

void linkify(QString& html) {
  for (const LinkStep& step : linkSteps())
    if (html.contains(step.needle))
      html.replace(step.pattern, step.replacement);
}

void resolvePlaceholders(QString& html) {
  for (const Placeholder& placeholder : placeholders)
    replaceAll(html, placeholder);
}

}  // namespace kelmora::terminal

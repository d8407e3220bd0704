#include "terminal/core/Links.h"

#include <QRegularExpression>
#include <array>

namespace {

struct LinkStep {
  /// Plain text that every match holds, far cheaper to look for.
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

/// The first puts a scheme before every "www.", also where there is one; the
/// next four take the doubled schemes out again; the last two make links of
/// what is left. Their order and the blank, "*", "&" and "#" in a link's body
/// are quirks of this client. A run of some tens of thousands of schemes in
/// one read is more than the expression engine takes on: it leaves the text of
/// that step from there on as it is, in no time.
const std::array<LinkStep, 7>& linkSteps() {
  static const std::array<LinkStep, 7> steps{
      step("ww.", R"(([wW]ww\.)+)", "http://www."),
      step("ttps://", R"(([hH]ttps://[hH]ttp://)+)", "https://"),
      step("ttps://", R"(([hH]ttps://[hH]ttps://)+)", "https://"),
      step("ttp://", R"(([hH]ttp://[hH]ttps://)+)", "http://"),
      step("ttp://", R"(([hH]ttp://[hH]ttp://)+)", "http://"),
      step("ttps://", R"(([hH]ttps://)+([a-zA-Z0-9%&#=\+\?/\.\-_\s*]+))",
           R"(<a href="https://\2">https://\2</a>)"),
      step("ttp://", R"(([hH]ttp://)+([a-zA-Z0-9%&#=\+\?/\.\-_\s*]+))",
           R"(<a href="http://\2">http://\2</a>)"),
  };
  return steps;
}

struct Placeholder {
  QStringView before;
  QStringView after;
};

/// In this order: the blanks made by the first two take part in the third.
constexpr std::array<Placeholder, 5> placeholders{{
    {u"<space>", u"&#32;"},
    {u"<tab>", u"&#32;&nbsp;&#32;&nbsp;"},
    {u"&#32;&#32;", u"&#32;&nbsp;"},
    {u"<lt>", u"&lt;"},
    {u"<gt>", u"&gt;"},
}};

/// QString::replace moves the rest of the text again and again when there are
/// many thousand matches; this copies each character once.
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

void linkify(QString& html) {
  for (const LinkStep& step : linkSteps())
    if (html.contains(step.needle))
      html.replace(step.pattern, step.replacement);
}

void resolvePlaceholders(QString& html) {
  for (const Placeholder& placeholder : placeholders)
    replaceAll(html, placeholder);
}

#include "demo/Shows.h"

#include <array>

#include "demo/DemoText.h"

namespace kelmora::demo {

namespace {

using demo::Ink;

const QString kReset = QStringLiteral("\x1b[0m");
const QString kEnd = QStringLiteral("\r\n");

struct TitleRow {
  int letterColour;
  const char* letters;
  const char* lighthouse;
};

// The blanks between the two all stand on the left: two blanks with a
// sequence between them may be shown as one.
constexpr std::array<TitleRow, 8> kTitle{{
    {0, R"(                                                     )", R"('.   |   .')"},
    {231, R"(     _  __    _                                      )", R"(-- ( * ) --)"},
    {229, R"(    | |/ /___| |_ __ ___   ___  _ __ __ _             )", R"(.'|===|'.)"},
    {222, R"(    | ' // _ \ | '_ ` _ \ / _ \| '__/ _` |             )", R"(/_____\)"},
    {215, R"(    | . \  __/ | | | | | | (_) | | | (_| |              )", R"(|[ ]|)"},
    {208, R"(    |_|\_\___|_|_| |_| |_|\___/|_|  \__,_|              )", R"(|   |)"},
    {0, R"(                                                        )", R"(| []|)"},
    {38, R"(  ~~^~~~~~^~~~~~~~^~~~~^~~~~~~~~~^~~~~~^~~~~~~~~^~~~~~~)", R"(/_____\~~~^~~~~~)"},
}};

QString ansi(const char* codes) {
  return QStringLiteral("\x1b[") + QString::fromLatin1(codes) + u'm';
}

QString ansi(const char* codes, int index) {
  return QStringLiteral("\x1b[") + QString::fromLatin1(codes) + QString::number(index) + u'm';
}

constexpr std::array<const char*, 8> kColourNames{"black", "red",     "green", "yellow",
                                                  "blue",  "magenta", "cyan",  "white"};

// A row of samples; blanks stay inside a sample's sequence, because a display
// may swallow the second of two blanks that a sequence keeps apart.
QString sampleRow(const char* label, const QString& before, int firstCode) {
  QString row = QStringLiteral("  ") + QString::fromLatin1(label).leftJustified(12);
  for (int k = 0; k < 8; ++k) {
    row += kReset + before + ansi("", firstCode + k) +
           QString::fromLatin1(kColourNames.at(static_cast<std::size_t>(k))) + kReset;
    if (k < 7)
      row += u' ';
  }
  return row + kEnd;
}

QString paletteRow(int first, int count) {
  QString row = QStringLiteral("  ");
  for (int n = first; n < first + count; ++n)
    row += ansi("48;5;", n) + QStringLiteral("  ");
  return row + kReset + kEnd;
}

QString paletteWords() {
  static constexpr std::array<int, 8> kShades{196, 202, 208, 214, 220, 190, 118, 46};
  QString row = QStringLiteral("  ");
  for (const int n : kShades)
    row += ansi("38;5;", n) + QStringLiteral("no.") + QString::number(n) + kReset + u' ';
  row.chop(1);
  return row + kEnd;
}

}  // namespace

QString welcome() {
  QString text = kEnd;
  for (const TitleRow& row : kTitle) {
    const QString letters = QString::fromLatin1(row.letters);
    text += row.letterColour == 0 ? letters : ansi("38;5;", row.letterColour) + letters + kReset;
    text += ansi("38;5;", 230) + QString::fromLatin1(row.lighthouse) + kReset + kEnd;
  }
  text += kEnd;
  text += paragraph(QStringLiteral("        a small town at the far edge of the map, "
                                   "keeping a light on"),
                    Ink::Yellow);
  text += kEnd;
  text +=
      paragraph(prose("Welcome, traveller. There is soup at the inn and a lamp in the window."));
  text += paragraph(prose("By what name shall we know you? (1 to 20 letters)"), Ink::White);
  return text;
}

QString colours() {
  QString text = paragraph(prose("The sixteen colours, plain and bold:"), Ink::White);
  text += sampleRow("normal", QString(), 30);
  text += sampleRow("bold", ansi("1"), 30);
  text += sampleRow("background", ansi("1") + ansi("37"), 40);
  text += kEnd + paragraph(prose("A cube of 216 colours:"), Ink::White);
  for (int row = 0; row < 6; ++row)
    text += paletteRow(16 + 36 * row, 36);
  text += kEnd + paragraph(prose("Twenty-four greys, and some words in the palette's colours:"),
                           Ink::White);
  text += paletteRow(232, 24);
  text += paletteWords();
  return text;
}

QString links() {
  // An address ends where its colour ends: the client's idea of an address
  // would run on over a blank.
  QString text = paragraph(prose("Two doors lead out of this world, and both are clean:"));
  text += QStringLiteral("  the guide: ") +
          paint(Ink::Cyan, QStringLiteral("http://kelmora.example/guide")) + kEnd;
  text += QStringLiteral("  the town:  ") +
          paint(Ink::Cyan, QStringLiteral("www.kelmora.example")) + kEnd;
  return text;
}

QString unicode() {
  static constexpr std::array<std::array<const char*, 2>, 12> kGreetings{{
      {"English", "The lamp is lit."},
      {"Deutsch", "Die Laterne brennt."},
      {"Français", "La lanterne est allumée."},
      {"Español", "El farol está encendido."},
      {"Íslenska", "Það logar á lampanum."},
      {"Čeština", "Lucerna svítí."},
      {"Polski", "Latarnia świeci."},
      {"Ελληνικά", "Το φανάρι είναι αναμμένο."},
      {"Русский", "Фонарь горит."},
      {"עברית", "הפנס דולק."},
      {"العربية", "المصباح مضاء."},
      {"日本語", "灯りがともっている。"},
  }};
  QString text = paragraph(prose("The lamp is lit, in twelve tongues:"), Ink::White);
  for (const auto& [language, greeting] : kGreetings) {
    const QString name = QString::fromUtf8(language);
    text += QStringLiteral("  ") + name + QString(12 - columns(name), u' ') +
            QString::fromUtf8(greeting) + kEnd;
  }
  for (const char* line :
       {"", "  ┌──────────┬──────────┐   ╔═══════════╗",
        "  │ lanterns │       11 │   ║ ░░▒▒▓▓██  ║", "  ├──────────┼──────────┤   ║ ♠ ♥ ♦ ♣ ★ ║",
        "  │ missing  │        1 │   ║ ½ € → ∞ ✓ ║", "  └──────────┴──────────┘   ╚═══════════╝"})
    text += QString::fromUtf8(line) + kEnd;
  return text;
}

QString floodLine(int number, int total) {
  return ansi("", 31 + (number - 1) % 7) +
         QStringLiteral("flood: line %1 of %2").arg(number).arg(total) + kReset + kEnd;
}

}  // namespace kelmora::demo

#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

/// What a game sends in play: rooms, chat, fights and prompts in lines of about
/// 80 characters, most of them in several colours, each ended by "\r\n". The
/// same seed gives the same text on every machine.
class GameText {
 public:
  /// Every line of this number in a hundred is a tell, the line that the
  /// benchmarks' one firing trigger waits for.
  static constexpr int linesPerTell = 100;

  /// With linkEvery above 0, every line of that number ends in a link that no
  /// other line has; otherwise one line in fifty names one of a few pages.
  explicit GameText(std::uint32_t seed, std::uint32_t linkEvery = 0)
      : random_(seed), linkEvery_(linkEvery) {}

  void appendLine(std::string& text) {
    ++lineNumber_;
    if (linkEvery_ > 0 && lineNumber_ % linkEvery_ == 0)
      appendLinkLine(text, lineNumber_);
    else if (lineNumber_ % linesPerTell == 0)
      appendTell(text);
    else if (linkEvery_ == 0 && lineNumber_ % 50 == 25)
      appendLinkLine(text, below(40));
    else
      appendSceneLine(text);
    text += "\r\n";
  }

  /// Whole lines until the text has grown to at least this many bytes.
  void fill(std::string& text, std::size_t size) {
    while (text.size() < size)
      appendLine(text);
  }

 private:
  using Words = std::array<std::string_view, 16>;

  static constexpr Words names{"Aldric", "Brenna", "Corvin", "Dessa", "Edrik",   "Fenna",
                               "Garrod", "Hilde",  "Ivo",    "Jorun", "Kestrel", "Lorcan",
                               "Mirel",  "Nessa",  "Osric",  "Petra"};
  static constexpr Words beasts{
      "a grey wolf",     "the cave troll",  "an old brigand",  "a giant rat",
      "the bone knight", "a marsh adder",   "a hill goblin",   "the mad hermit",
      "a stone golem",   "a black spider",  "the gate warden", "a starved bear",
      "a thin vampire",  "the river witch", "a masked thief",  "a frost elemental"};
  static constexpr Words blows{"slashes", "pierces", "crushes", "bites",   "claws",  "burns",
                               "strikes", "kicks",   "stabs",   "hammers", "gouges", "cuts",
                               "bruises", "chills",  "mauls",   "whips"};
  static constexpr Words words{"the",    "narrow", "street", "winds",   "between", "leaning",
                               "houses", "whose",  "upper",  "storeys", "nearly",  "touch",
                               "above",  "a",      "muddy",  "gutter"};
  static constexpr Words exits{"north",     "south",     "east",      "west",      "up",   "down",
                               "northeast", "northwest", "southeast", "southwest", "gate", "stairs",
                               "bridge",    "cellar",    "trail",     "tower"};
  static constexpr std::array<std::string_view, 6> colours{"\x1b[31m",   "\x1b[32m",   "\x1b[33m",
                                                           "\x1b[1;34m", "\x1b[1;35m", "\x1b[36m"};
  static constexpr std::string_view bold = "\x1b[1;37m";
  static constexpr std::string_view plain = "\x1b[0m";
  static constexpr std::size_t lineLength = 72;  ///< visible; the colours come on top

  [[nodiscard]] std::uint32_t below(std::uint32_t limit) {
    return static_cast<std::uint32_t>(random_()) % limit;
  }
  template <typename Table>
  [[nodiscard]] std::string_view one(const Table& table) {
    return table[below(static_cast<std::uint32_t>(table.size()))];
  }
  void appendCount(std::string& text, std::uint32_t limit) { text += std::to_string(below(limit)); }

  void appendProse(std::string& text, std::size_t length) {
    const std::size_t end = text.size() + length;
    while (text.size() < end) {
      text += one(words);
      text += ' ';
    }
    text.back() = '.';
  }

  void appendColoured(std::string& text, std::string_view colour, std::string_view word) {
    text += colour;
    text += word;
    text += plain;
  }

  void appendSceneLine(std::string& text) {
    switch (lineNumber_ % 12) {
      case 0:
        text += bold;
        appendProse(text, 24);
        text += plain;
        break;
      case 4:
        text += "Obvious exits: ";
        for (int number = 0; number < 5; ++number) {
          appendColoured(text, colours[1], one(exits));
          text += number < 4 ? ", " : ".";
        }
        break;
      case 5:
      case 6:
        appendChat(text);
        break;
      case 7:
      case 8:
      case 9:
      case 10:
        appendBlow(text);
        break;
      case 11:
        appendPrompt(text);
        break;
      default:
        appendProse(text, lineLength);
    }
  }

  void appendChat(std::string& text) {
    text += colours[3];
    text += "[gossip] ";
    text += one(names);
    text += plain;
    text += ": ";
    appendProse(text, 56);
  }

  void appendBlow(std::string& text) {
    appendColoured(text, one(colours), one(beasts));
    text += ' ';
    text += one(blows);
    text += ' ';
    appendColoured(text, bold, one(names));
    text += " for ";
    text += colours[0];
    appendCount(text, 300);
    text += plain;
    text += " points; ";
    appendProse(text, 24);
  }

  void appendPrompt(std::string& text) {
    constexpr std::array<std::string_view, 3> points{"hp: [ ", ", sp: [ ", ", ep: [ "};
    for (const std::string_view point : points) {
      text += point;
      appendCount(text, 400);
      text += " / 400 ]";
    }
    text += " > ";
  }

  void appendTell(std::string& text) {
    text += one(names);
    text += " tells you: ";
    appendProse(text, 54);
  }

  void appendLinkLine(std::string& text, std::uint32_t page) {
    text += one(names);
    text += " has put up a notice about ";
    text += one(beasts);
    text += ": http://kelmora.example/board/";
    text += std::to_string(page);
  }

  std::mt19937 random_;
  std::uint32_t lineNumber_ = 0;
  std::uint32_t linkEvery_;
};

#pragma once

#include <QByteArray>
#include <QString>
#include <array>
#include <random>
#include <string_view>

/// Makes random patterns, and lines that match them or nearly do. They use few
/// letters, so that matches by chance are frequent, and every character that the
/// rules treat in a special way.
class RandomTriggers {
 public:
  explicit RandomTriggers(quint32 seed) : random_(seed) {}

  [[nodiscard]] int below(int limit) {
    return static_cast<int>(random_() % static_cast<quint32>(limit));
  }

  [[nodiscard]] QString pattern() {
    static constexpr std::array<std::u16string_view, 30> pieces{
        u"{*}", u"{*}", u"{*} ", u"{*} ", u" {*}",   u" {*}", u" {*} ", u" {*} ", u" ", u" ",
        u" ",   u"\t",  u"  ",   u"a",    u"b",      u"ab",   u"ba",    u".",     u"?", u"s",
        u"%",   u"%s",  u"é",    u"Ã©",   u"\u20ac", u"ÿ",    u"{",     u"*}",    u"a", u"b"};
    QString text;
    // Some patterns have more than ten wildcards.
    if (below(40) == 0)
      for (int count = 8 + below(5); count > 0; --count)
        text += QLatin1String("{*} ");
    if (below(60) == 0)
      text += QString(below(80), QLatin1Char('a'));
    for (int length = 1 + below(7); length > 0; --length)
      text += one(pieces);
    if (below(200) == 0)
      text.insert(below(static_cast<int>(text.size()) + 1), QChar(0));
    return text;
  }

  /// A line that the pattern may match, or one that has nothing to do with it.
  [[nodiscard]] QByteArray line(const QString& pattern) {
    QByteArray bytes;
    if (below(10) == 0)
      return word() + ' ' + word();
    if (below(3) == 0)
      bytes += word();
    const QStringList literals = pattern.split(QLatin1String("{*}"));
    for (qsizetype place = 0; place < literals.size(); ++place) {
      if (place > 0)
        bytes += word();
      addLiteral(literals.at(place), bytes);
    }
    if (below(4) == 0)
      bytes += ' ' + word();
    if (below(30) == 0 && !bytes.isEmpty())
      bytes[below(static_cast<int>(bytes.size()))] = static_cast<char>(below(256));
    if (below(50) == 0)
      bytes.insert(below(static_cast<int>(bytes.size()) + 1), '\0');
    return bytes;
  }

 private:
  void addLiteral(const QString& literal, QByteArray& bytes) {
    for (const QChar character : literal) {
      if (character.isSpace())
        bytes += blanks();
      else if (below(60) != 0)
        bytes += below(3) == 0 ? QString(character).toUtf8() : QString(character).toLatin1();
    }
  }

  [[nodiscard]] QByteArray blanks() {
    static constexpr std::array<std::string_view, 8> runs{" ", " ",  " ",  " ",
                                                          "",  "  ", "\t", "\v\f "};
    const std::string_view run = one(runs);
    return QByteArray(run.data(), static_cast<qsizetype>(run.size()));
  }

  [[nodiscard]] QByteArray word() {
    static constexpr std::array<std::string_view, 16> pieces{"a",    "b",
                                                             "a",    "b",
                                                             "ab",   ".",
                                                             "?",    "%",
                                                             "s",    "\xc3\xa9",
                                                             "\xe9", "\xe2\x82\xac",
                                                             "\xc3", "\xef\xbb\xbf",
                                                             "{*}",  "\xf0\x9f\x98\x80"};
    if (below(100) == 0)
      return QByteArray(1019 + below(10), 'a') + (below(2) == 0 ? "b" : "\xc3\xa9");
    QByteArray bytes;
    for (int length = 1 + below(3); length > 0; --length) {
      const std::string_view piece = one(pieces);
      bytes.append(piece.data(), static_cast<qsizetype>(piece.size()));
    }
    return bytes;
  }

  template <typename Array>
  [[nodiscard]] typename Array::value_type one(const Array& choices) {
    return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
  }

  std::mt19937 random_;
};

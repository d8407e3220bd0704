#pragma once

#include <QHash>
#include <QMap>
#include <QSet>
#include <QStringList>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

/// A second interpreter to compare the real one with. It is as simple as can be:
/// functions call themselves where lists and loops are nested, and the C library's
/// sscanf takes actions apart. It can only run small scripts.
class PlainScript {
 public:
  /// A script that runs more actions is given up.
  static constexpr int mostActions = 1200;
  /// A script that makes longer texts is given up, too.
  static constexpr qsizetype longestText = 1000;

  QHash<QString, QStringList> aliases;
  QMap<QString, QString> variables;
  QMap<QString, QStringList> timers;
  QMap<QString, int> delays;
  QStringList log;
  bool gaveUp = false;

  void run(const QStringList& actions) {
    told_.clear();
    runList(actions, {});
  }

  /// One line as it comes from the input bar while splitting is off.
  void type(const QString& line) {
    told_.clear();
    QString id;
    interpret(line, id, {});
  }

  void fire(const QString& id) {
    delays.remove(id);
    run(timers.take(id));
  }

 private:
  struct Two {
    QString first;
    QString second;
  };

  /// Room for an argument, one byte more that shows that it was too long, and NUL.
  using Field = std::array<char, 1025>;

  QString textOf(Field& field, const QString& word) {
    if (std::strlen(field.data()) > 1023) {
      field[1023] = 0;
      tell("Text cut at 1023 bytes: ", word);
    }
    return QString::fromUtf8(field.data());
  }

  std::optional<QString> rawArgument(const QString& word, const QString& action) {
    Field one{};
    if (std::sscanf(action.toLatin1().constData(), "%*s %1024[^\n]", one.data()) != 1)
      return std::nullopt;
    return textOf(one, word);
  }

  std::optional<QString> oneArgument(const QString& word, const QString& action) {
    const auto raw = rawArgument(word, action);
    return raw ? std::optional(raw->trimmed()) : std::nullopt;
  }

  std::optional<Two> twoArguments(const QString& word, const QString& action) {
    Field first{};
    Field second{};
    if (std::sscanf(action.toLatin1().constData(), "%*s %1023[^,],%1024[^\n]", first.data(),
                    second.data()) != 2)
      return std::nullopt;
    return Two{QString::fromUtf8(first.data()).trimmed(), textOf(second, word).trimmed()};
  }

  /// Tells the same loss only once in an event.
  void tell(const QString& loss, const QString& about) {
    if (!told_.contains(loss))
      log << "## " + loss + about;
    told_.insert(loss);
  }

  QString substitute(QString text) {
    for (auto variable = variables.cbegin(); variable != variables.cend() && !gaveUp; ++variable) {
      text.replace(u'{' + variable.key() + u'}', variable.value());
      gaveUp = text.size() > longestText;
    }
    return text;
  }

  /// `open` are the aliases that led here through lines of lists alone.
  void runList(const QStringList& actions, const QStringList& open) {
    for (qsizetype i = 0; i < actions.size() && !gaveUp && !circle_; ++i) {
      QString id;
      const int delay = interpret(actions[i], id, open);
      if (delay <= 0)
        continue;
      if (timers.contains(id)) {
        log << "## Duplicate timer id: " + id;
      } else {
        timers[id] = actions.mid(i + 1);
        delays[id] = delay;
      }
      return;
    }
  }

  void aliasOrSend(const QString& text, const QStringList& open) {
    if (!aliases.contains(text)) {
      log << "> " + text;
    } else if (open.contains(text)) {
      circle_ = text;
      tell("Endless alias stopped: " + text, {});
    } else {
      runList(QStringList(aliases[text]), open + QStringList(text));
      // The alias that would have begun again is this one: the lists inside it have
      // been left, and the actions around it go on.
      if (circle_ == text)
        circle_.reset();
    }
  }

  int interpret(QString action, QString& id, const QStringList& open) {
    if (++actionCount_ > mostActions)
      gaveUp = true;
    if (gaveUp)
      return 0;
    if (!action.startsWith("/") || action.startsWith("//")) {
      if (action.startsWith("//"))
        action.remove(0, 1);
      aliasOrSend(action, open);
      return 0;
    }
    const QString word = action.split(' ').first();
    if (word == "/cond" || word == "/condloop" || word == "/delete")
      return withOne(word, action, id);
    if (word == "/variables") {
      log << "++ Global variables:";
      for (const QString& name : variables.keys())
        log << "++  " + name + " : " + variables[name];
      return 0;
    }
    if (word == "/unpause") {
      const auto raw = rawArgument(word, action);
      if (!raw)
        log << "## /unpause takes one argument";
      else if (timers.remove(*raw) > 0)
        log << "++ Deleted timer: " + *raw;
      else
        log << "## No such pending timer: " + *raw;
      return 0;
    }
    if (word == "/echo") {
      echo(word, action);
      return 0;
    }
    static const QStringList withTwo{"/set",
                                     "/add",
                                     "/subtract",
                                     "/multiply",
                                     "/divide",
                                     "/isequal",
                                     "/isnotequal",
                                     "/islessthan",
                                     "/isgreaterthan",
                                     "/islessthanorequal",
                                     "/isgreaterthanorequal",
                                     "/repeat",
                                     "/pause"};
    if (!withTwo.contains(word)) {
      aliasOrSend(action, open);
      return 0;
    }
    const auto two = twoArguments(word, action);
    if (!two) {
      log << "## " + word + " takes two arguments";
      return 0;
    }
    return withBoth(word, *two, id);
  }

  int withOne(const QString& word, const QString& action, QString& id) {
    const auto one = oneArgument(word, action);
    if (!one)
      log << "## " + word + " takes one argument";
    else if (word == "/delete" && variables.remove(*one) == 0)
      log << "## No such variable to delete: " + *one;
    else if (word == "/cond" && flag_)
      interpret(*one, id, {});
    else if (word == "/condloop")
      conditionLoop(*one, id);
    return 0;
  }

  void conditionLoop(const QString& body, QString& id) {
    for (int c = 514; flag_ && !gaveUp;) {
      if (--c == 0) {
        log << "## /condloop has reached maximum evaluation";
        return;
      }
      interpret(body, id, {});
    }
  }

  void echo(const QString& word, const QString& action) {
    QString text;
    QString colour = "#FFFFFF";
    if (const auto two = twoArguments(word, action)) {
      text = two->first;
      colour = "#" + two->second;
    } else if (const auto one = oneArgument(word, action)) {
      text = *one;
    } else {
      log << "## /echo takes at least one argument";
      return;
    }
    log << "[" + colour + "] " + substitute(text);
  }

  int withBoth(const QString& word, const Two& two, QString& id) {
    const QString first = substitute(two.first);
    const QString second = substitute(two.second);
    if (word == "/pause") {
      id = two.first;
      return std::atoi(two.second.toLatin1().constData());
    }
    if (word == "/repeat") {
      const float count = first.toFloat();
      const int n = count >= -2147483648.0F && count < 2147483648.0F ? static_cast<int>(count) : 0;
      for (int i = 0; i < qMin(n, 512) && !gaveUp; ++i)
        interpret(two.second, id, {});
    } else if (word == "/set") {
      variables[two.first] = second;
    } else if (word == "/isequal") {
      flag_ = first == second;
    } else if (word == "/isnotequal") {
      flag_ = !(first == second);
    } else if (word == "/islessthan") {
      flag_ = first.toFloat() < second.toFloat();
    } else if (word == "/isgreaterthan") {
      flag_ = first.toFloat() > second.toFloat();
    } else if (word == "/islessthanorequal") {
      flag_ = first.toFloat() <= second.toFloat();
    } else if (word == "/isgreaterthanorequal") {
      flag_ = first.toFloat() >= second.toFloat();
    } else {
      calculate(word, two.first, second);
    }
    return 0;
  }

  void calculate(const QString& word, const QString& name, const QString& operand) {
    if (!variables.contains(name)) {
      log << "## No such variable: " + name;
      return;
    }
    const QString value = variables[name];
    bool wholeA = false;
    bool wholeB = false;
    bool realA = false;
    bool realB = false;
    const qint64 a = value.toInt(&wholeA);
    const qint64 b = operand.toInt(&wholeB);
    float x = value.toFloat(&realA);
    float y = operand.toFloat(&realB);
    const bool whole = wholeA && wholeB;
    if (whole) {
      x = static_cast<float>(a);
      y = static_cast<float>(b);
    }
    if (!(wholeA || realA) || !(wholeB || realB)) {
      if (word == "/add")
        variables[name] = value + operand;
      gaveUp = variables[name].size() > longestText;
    } else if (word == "/add") {
      variables[name] = whole ? wrapped(a + b) : QString::number(double{x + y}, 'g', 6);
    } else if (word == "/subtract") {
      variables[name] = whole ? wrapped(a - b) : QString::number(double{x - y}, 'g', 6);
    } else if (word == "/multiply") {
      variables[name] = QString::number(double{x * y}, 'f', 6);
    } else {
      variables[name] = QString::number(double{x / (y == 0.0F ? 1.0F : y)}, 'f', 6);
    }
  }

  static QString wrapped(qint64 sum) {
    return QString::number(static_cast<qint32>(static_cast<quint32>(static_cast<quint64>(sum))));
  }

  int actionCount_ = 0;
  QSet<QString> told_;
  /// Set while the lists of an endless alias are being left.
  std::optional<QString> circle_;
  bool flag_ = false;
};

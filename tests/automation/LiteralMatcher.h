#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <array>
#include <cstdio>
#include <optional>

#include "automation/core/Entries.h"
#include "automation/core/TriggerTable.h"

using namespace kelmora;
using namespace kelmora::automation;

/// The rule of triggers, written down with the C library's sscanf and without any care
/// for speed. The compiled triggers are compared with it. The locale must be "C".
namespace literal {

inline std::optional<QStringList> matches(const QString& pattern, const QByteArray& line) {
  const qsizetype wildcards = pattern.count(QLatin1String("{*}"));
  if (wildcards == 0 || wildcards > 10)
    return line.indexOf(pattern.toLatin1()) >= 0 ? std::optional(QStringList()) : std::nullopt;

  QString doubled = pattern;
  doubled.replace(QLatin1String("%"), QLatin1String("%%"));
  const QByteArray format = doubled.replace(QLatin1String("{*}"), QLatin1String("%s")).toLatin1();

  std::array<QByteArray, 10> words;
  words.fill(QByteArray(line.size() + 1, '\0'));
  const auto at = [&](std::size_t word) { return words[word].data(); };
  const int count = std::sscanf(line.constData(), format.constData(), at(0), at(1), at(2), at(3),
                                at(4), at(5), at(6), at(7), at(8), at(9));
  if (count != wildcards)
    return std::nullopt;

  QStringList captured;
  for (qsizetype word = 0; word < wildcards; ++word)
    captured += QString::fromUtf8(QByteArray(at(static_cast<std::size_t>(word))).left(1023));

  const QByteArray tail = format.mid(format.lastIndexOf("%s") + 2);
  if (!tail.isEmpty()) {
    if (tail.contains('%'))
      return std::nullopt;
    const QString text = QString::fromUtf8(line);
    const QString last = QString::fromUtf8(at(static_cast<std::size_t>(wildcards - 1)));
    const qsizetype place = text.lastIndexOf(last);
    if (place < 0 || text.mid(place + last.size()) != QString::fromLatin1(tail))
      return std::nullopt;
  }
  return captured;
}

inline void check(const QList<TriggerEntry>& entries, const QByteArray& line, TriggerHost& host) {
  for (const TriggerEntry& entry : entries) {
    const auto words = matches(entry.pattern, line);
    if (!words)
      continue;
    for (qsizetype word = 0; word < words->size(); ++word)
      host.setVariable(QStringLiteral("_trigOut%1").arg(word), words->at(word));
    host.runActions(entry.commands);
  }
}

}  // namespace literal

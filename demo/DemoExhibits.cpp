#include <algorithm>

#include "demo/DemoWorld.h"
#include "demo/Shows.h"
#include "demo/Tutorial.h"

namespace kelmora::demo {

// The commands that show a client's abilities off rather than the world's.

namespace {

using demo::Ink;
using demo::prose;

constexpr int kLongestFlood = 1'000'000;

}  // namespace

void DemoWorld::showColours(DemoPlayer& player, const QString&) {
  player.outgoing += colours();
}

void DemoWorld::beep(DemoPlayer& player, const QString&) {
  // The bell is added behind the wrapped line: it takes no column.
  tell(player, prose("Down in the harbour somebody rings the bell: ding!"), Ink::Yellow);
  player.outgoing.insert(player.outgoing.size() - 2, u'\a');
}

void DemoWorld::showLinks(DemoPlayer& player, const QString&) {
  player.outgoing += links();
}

void DemoWorld::showUnicode(DemoPlayer& player, const QString&) {
  player.outgoing += unicode();
}

void DemoWorld::hungry(DemoPlayer& player, const QString&) {
  tell(player, prose("You are hungry."), Ink::Red);
}

void DemoWorld::bob(DemoPlayer& player, const QString&) {
  tell(player, prose("Bob tells you: hello traveller"), Ink::Green);
}

void DemoWorld::flood(DemoPlayer& player, const QString& argument) {
  if (argument.toLower() == QLatin1String("stop")) {
    const auto sent = host_.stopFlood(player.id);
    player.flooding = false;
    if (sent)
      tell(player, QStringLiteral("flood: %1 lines sent").arg(*sent));
    else
      tell(player, prose("The tide is out. There is nothing to stop."));
    return;
  }
  const int lines = wholeNumber(argument, 0);
  if (lines < 1) {
    tell(player, prose("How high a flood? `flood 1000` sends a thousand lines."));
  } else if (player.flooding) {
    tell(player, prose("One flood at a time. `flood stop` calls the tide back."));
  } else {
    player.flooding = true;
    player.promptDue = false;
    host_.startFlood(player.id, std::min(lines, kLongestFlood));
  }
}

void DemoWorld::showTutorial(DemoPlayer& player, const QString& argument) {
  const auto chapters = tutorial();
  const int count = static_cast<int>(chapters.size());
  const QString word = argument.toLower();
  int wanted = wholeNumber(word, 0);
  if (word == QLatin1String("next"))
    wanted = player.chapter < count ? player.chapter + 1 : 0;
  if (wanted >= 1 && wanted <= count) {
    player.chapter = wanted;
    const Chapter& chapter = chapters[static_cast<std::size_t>(wanted - 1)];
    tell(player, QStringLiteral("Chapter %1 of %2: ").arg(wanted).arg(count) + prose(chapter.title),
         Ink::Yellow);
    tell(player, prose(chapter.text));
    tell(player, wanted < count ? prose("\nOn you go with `tutorial next`.")
                                : prose("\nThat was the last chapter."));
    return;
  }
  tell(player, prose("The tutorial has these chapters:"), Ink::White);
  for (int n = 1; n <= count; ++n)
    tell(player, QStringLiteral("  %1  %2")
                     .arg(n, 2)
                     .arg(prose(chapters[static_cast<std::size_t>(n - 1)].title)));
  tell(player,
       prose("`tutorial next` goes through them one by one, `tutorial 3` opens chapter 3."));
}

void DemoWorld::help(DemoPlayer& player, const QString&) {
  tell(player, prose("What one can do in Kelmora:"), Ink::White);
  for (const Command& command : commands()) {
    const QString usage = QString::fromLatin1(command.usage);
    player.outgoing += QStringLiteral("  ") + paint(Ink::Cyan, usage) +
                       QString(19 - usage.size(), u' ') + QString::fromLatin1(command.help) +
                       QStringLiteral("\r\n");
  }
}

}  // namespace kelmora::demo

#include "Gallery.h"

#include "Dialogs.h"
#include "GuidePage.h"
#include "Hands.h"
#include "Illustrator.h"
#include "Reading.h"
#include "Studio.h"
#include "terminal/view/InputWidget.h"

namespace kelmora::tools {

namespace {

const QString kPrompt = QStringLiteral("hp: [");

GuidePage firstSteps() {
  return GuidePage(QStringLiteral(KELMORA_FIRST_STEPS));
}

/// What the page has its reader put into an editor.
Entry firstEntry(GuideStep::Kind kind) {
  const GuidePage page = firstSteps();
  for (const GuideSection& section : page.sections())
    for (const GuideStep& step : section.steps)
      if (step.kind == kind)
        return {step.subject, step.lines.join(u'\n')};
  return {};
}

void enterAsRobin(Studio& studio) {
  studio.enter();
  studio.say(QStringLiteral("Robin"), kPrompt);
}

/// One picture after another.
class Film {
 public:
  explicit Film(Studio& studio) : studio_(studio) {}

  void show(int milliseconds) {
    const QString number = QStringLiteral("%1").arg(++count_, 4, 10, QLatin1Char('0'));
    studio_.keep(QStringLiteral("film-%1-%2.png").arg(number).arg(milliseconds), studio_.window());
  }
  void type(const QString& words) {
    InputWidget& bar = studio_.bar();
    constexpr int lettersAtOnce = 2;
    for (qsizetype at = lettersAtOnce; at < words.size(); at += lettersAtOnce) {
      typeInto(bar, words.first(at));
      show(lettersAtOnce * millisecondsALetter);
    }
    typeInto(bar, words);
    show(pause);
  }
  void say(const QString& words, const QString& answer, int milliseconds) {
    type(words);
    const qsizetype before = studio_.text().size();
    press(studio_.bar(), Qt::Key_Return);
    studio_.awaitWords(answer, before);
    show(milliseconds);
  }
  void await(const QString& answer, qsizetype from, int milliseconds) {
    studio_.awaitWords(answer, from);
    show(milliseconds);
  }

 private:
  static constexpr int millisecondsALetter = 70;
  static constexpr int pause = 350;

  Studio& studio_;
  int count_ = 0;
};

}  // namespace

void takeGuidePictures(Studio& studio) {
  Illustrator(studio).follow(firstSteps());
}

QStringList guidePictures() {
  return Illustrator::pictures(firstSteps());
}

void takeDialogPictures(Studio& studio) {
  keepGeneralSettings(studio);
  keepInterfaceSettings(studio);
  keepProxySettings(studio);
  keepHelp(studio);
  keepAliases(studio, firstEntry(GuideStep::Kind::Alias));
  keepDeleteQuestion(studio);
  keepTriggers(studio, firstEntry(GuideStep::Kind::Trigger));
  keepRefusals(studio);
  keepMacros(studio, firstEntry(GuideStep::Kind::Macro).commands);
  enterAsRobin(studio);
  studio.keep(QStringLiteral("window.png"), studio.window());
  keepFindBar(studio);
  keepReadingBack(studio);
  keepMenu(studio);
  keepStartFailure(studio);
}

QStringList dialogPictures() {
  return {QStringLiteral("window.png"),
          QStringLiteral("general-settings.png"),
          QStringLiteral("proxy-settings.png"),
          QStringLiteral("interface-settings.png"),
          QStringLiteral("help.png"),
          QStringLiteral("aliases.png"),
          QStringLiteral("delete-alias.png"),
          QStringLiteral("refused-alias.png"),
          QStringLiteral("refused-name.png"),
          QStringLiteral("triggers.png"),
          QStringLiteral("key.png"),
          QStringLiteral("macros.png"),
          QStringLiteral("find-empty.png"),
          QStringLiteral("find.png"),
          QStringLiteral("find-nothing.png"),
          QStringLiteral("find-expression.png"),
          QStringLiteral("read-back.png"),
          QStringLiteral("read-back-find.png"),
          QStringLiteral("menu.png"),
          QStringLiteral("failure.png")};
}

void takeFilm(Studio& studio) {
  studio.enter();
  Film film(studio);
  film.show(1500);
  film.say(QStringLiteral("Robin"), kPrompt, 2000);
  film.say(QStringLiteral("map"), kPrompt, 2000);
  film.say(QStringLiteral("north;kill soldier"), QStringLiteral("square up"), 700);
  qsizetype from = studio.text().size();
  for (int round = 0; round < 3; ++round) {
    film.await(kPrompt, from, 900);
    from = studio.text().size();
  }
  studio.awaitWords(QStringLiteral("You have won!"), 0);
  film.show(1500);
  film.say(QStringLiteral("colours"), kPrompt, 2500);
  film.say(QStringLiteral("say Come and play!"), kPrompt, 3000);
}

}  // namespace kelmora::tools

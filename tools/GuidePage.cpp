#include "GuidePage.h"

#include <QFile>
#include <QRegularExpression>
#include <array>
#include <optional>

namespace kelmora::tools {

namespace {

using Kind = GuideStep::Kind;

struct Sentence {
  Kind kind;
  const char* form;
  bool hasBlock;
};

constexpr std::array sentences{
    Sentence{Kind::Type, "Type:", true},
    Sentence{Kind::Alias, "Alias `(.+)`:", true},
    Sentence{Kind::Trigger, "Trigger `(.+)`:", true},
    Sentence{Kind::Macro, "Macro `(.+)`:", true},
    Sentence{Kind::File, "File `(.+)`:", true},
    Sentence{Kind::See, "You see:", true},
    Sentence{Kind::DoNotSee, "You do not see:", true},
    Sentence{Kind::Find, "You find in `(.+)`:", true},
    Sentence{Kind::Edit, "Edit the alias `([^`]+)`,(?: press `([^`]+)`)? and save it\\.", false},
    Sentence{Kind::Wheel, "Turn the mouse wheel up over the pane\\.", false},
    Sentence{Kind::Seek, "Press `([^`]+)` and type `([^`]+)`\\.", false},
    Sentence{Kind::Menu,
             "Click on `([^`]+)` with the right button, choose `([^`]+)`, and write:", true},
    Sentence{Kind::Divided, "The pane is in two parts now\\.", false},
    Sentence{Kind::Whole, "The pane is whole again\\.", false},
    Sentence{Kind::Picture, "!\\[[^]]*\\]\\(\\.\\./images/([^)]+)\\)", false},
    Sentence{Kind::Press, "Press `([^`]+)`(?:, and call the file `([^`]+)`)?\\.", false},
    Sentence{Kind::Switch, "In the general settings, click `([^`]+)` and `Apply`\\.", false},
    Sentence{Kind::Restart, "Close the client and start it again\\.(?: A box says `([^`]+)`)?",
             false},
    Sentence{Kind::Cut, "Imagine that the network cuts the next line behind `([^`]+)`\\.", false},
    Sentence{Kind::Silence, "Imagine that the host is silent from now on\\.", false},
    Sentence{Kind::Grey, "The buttons of (`[^`]+` and `[^`]+`) are grey\\.", false},
    Sentence{Kind::NotGrey, "The button of `([^`]+)` can be pressed\\.", false},
};

struct Understood {
  GuideStep step;
  bool hasBlock;
};

std::optional<Understood> understand(const QString& line) {
  for (const Sentence& sentence : sentences) {
    const QRegularExpression form(
        QRegularExpression::anchoredPattern(QString::fromLatin1(sentence.form)));
    if (const auto match = form.match(line); match.hasMatch())
      return Understood{{sentence.kind, match.captured(1), {}, 0, match.captured(2)},
                        sentence.hasBlock};
  }
  return std::nullopt;
}

}  // namespace

GuidePage::GuidePage(const QString& path) {
  QFile file(path);
  if (file.open(QIODevice::ReadOnly))
    read(QString::fromUtf8(file.readAll()).split(u'\n'));
  else
    faults_ << QStringLiteral("cannot be read: ") + path;
}

void GuidePage::read(const QStringList& lines) {
  static const QString fence = QStringLiteral("```");
  std::optional<GuideStep> open;  // waits for its block
  for (qsizetype at = 0; at < lines.size(); ++at) {
    const QString& line = lines[at];
    const auto fault = [&](const QString& what) {
      faults_ << QStringLiteral("line %1: %2: %3").arg(at + 1).arg(what, line);
    };
    const auto take = [&](GuideStep step) {
      if (sections_.isEmpty())
        return fault(QStringLiteral("a step before the first heading"));
      sections_.last().steps << std::move(step);
    };
    if (line.startsWith(fence)) {
      QStringList block;
      for (++at; at < lines.size() && lines[at] != fence; ++at)
        block << lines[at];
      if (!open || block.isEmpty()) {
        fault(QStringLiteral("a block of no step"));
        continue;
      }
      open->lines = block;
      take(*open);
      open.reset();
    } else if (const auto understood = understand(line)) {
      if (open)
        fault(QStringLiteral("a step before this one has no block"));
      GuideStep step = understood->step;
      step.place = static_cast<int>(at) + 1;
      if (understood->hasBlock)
        open = step;
      else
        take(step);
    } else if (!line.isEmpty() && open) {
      fault(QStringLiteral("text before the block of a step"));
      open.reset();
    } else if (line.startsWith(QLatin1String("## "))) {
      sections_ << GuideSection{line.sliced(3), {}};
    }
  }
  if (open)
    faults_ << QStringLiteral("line %1: a step without its block").arg(open->place);
}

}  // namespace kelmora::tools

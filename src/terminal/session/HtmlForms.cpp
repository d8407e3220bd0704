#include "terminal/session/HtmlForms.h"

#include <QTextDocument>
#include <algorithm>

#include "terminal/session/HtmlSamples.h"

namespace kelmora::terminal {

namespace {

constexpr QChar textMark = HtmlSamples::textMark;
constexpr QChar targetMark = HtmlSamples::targetMark;

/// Characters that cannot be part of a sample: those from which the toolkit makes
/// a paragraph or an object, those that divide the lines of samples, and the marks.
constexpr std::u16string_view unteachable = u"\n\r\u2029\uFDD0\uFDD1\uFFFC\uE000\uE001";

/// Collects the characters of texts, each once.
class Alphabet {
 public:
  void add(QStringView text) {
    for (const QChar letter : text)
      seen_[letter.unicode()] = true;
  }
  [[nodiscard]] bool isLearnable() const {
    return std::none_of(unteachable.begin(), unteachable.end(),
                        [this](char16_t letter) { return seen_[letter]; });
  }
  [[nodiscard]] QString letters() const {
    QString letters;
    for (std::size_t letter = 0; letter < seen_.size(); ++letter)
      if (seen_[letter])
        letters += QChar(static_cast<char16_t>(letter));
    return letters;
  }

 private:
  std::vector<char> seen_ = std::vector<char>(0x10000);
};

/// Collects character formats, each once. Their users replace the target of a link
/// by a mark, so that links differing only in their targets share a format.
class Looks {
 public:
  [[nodiscard]] int placeOf(const QTextCharFormat& look) {
    QList<int>& similar =
        places_[qHashMulti(0, look.foreground().color().rgba(), look.background().color().rgba(),
                           look.propertyCount())];
    for (const int place : similar)
      if (all_[static_cast<std::size_t>(place)] == look)
        return place;
    similar.append(static_cast<int>(all_.size()));
    all_.push_back(look);
    return similar.last();
  }
  [[nodiscard]] const std::vector<QTextCharFormat>& all() const { return all_; }

 private:
  std::vector<QTextCharFormat> all_;
  QHash<size_t, QList<int>> places_;
};

}  // namespace

/// Finds out which characters and formats a document has, lets the toolkit write a
/// sample of each, and takes their HTML from that.
class HtmlForms::Learner {
 public:
  Learner(const QTextDocument& document, const DocumentRuns& content)
      : formats_(document.allFormats()), samples_(document) {
    for (const DocumentRuns::Paragraph& paragraph : content.paragraphs) {
      inTexts_.add(paragraph.text);
      kinds_.insert(kindOf(paragraph), {});
    }
    uses_.resize(static_cast<std::size_t>(formats_.size()));
    for (const DocumentRuns::Run& run : content.runs)
      if (Use& use = uses_[static_cast<std::size_t>(run.format)]; use.look < 0)
        use = useOf(formats_.at(run.format).toCharFormat());
  }

  [[nodiscard]] std::optional<HtmlForms> learn() {
    if (!inTexts_.isLearnable() || !inTargets_.isLearnable())
      return std::nullopt;
    addSamples();
    if (!samples_.write() || !learnLetters() || !learnTargetLetters() || !learnRuns() ||
        !learnParagraphs())
      return std::nullopt;
    forms_.page_ = {bytesOf(samples_.head()), bytesOf(samples_.tail())};
    return std::move(forms_);
  }

 private:
  struct Use {
    int look = -1;  ///< its index among the looks; -1 for a format out of use
    QString target = {};
  };
  /// What stands around a text of some look. For a link the part before the text is
  /// in two: before and behind its target.
  struct Look {
    QByteArray before = {};
    QByteArray behindTarget = {};
    QByteArray behind = {};
  };

  [[nodiscard]] Use useOf(QTextCharFormat look) {
    const QString target = look.anchorHref();
    if (!target.isEmpty()) {
      inTargets_.add(target);
      look.setAnchorHref(targetMark);
    }
    return {looks_.placeOf(look), target};
  }

  void addSamples() {
    samples_.add(HtmlSamples::between(textMark, inTexts_.letters()));
    QTextCharFormat link;
    link.setAnchor(true);
    link.setAnchorHref(HtmlSamples::between(targetMark, inTargets_.letters()));
    samples_.add(textMark, link);
    for (const QTextCharFormat& look : looks_.all())
      samples_.add(textMark, look);
    for (auto kind = kinds_.keyBegin(); kind != kinds_.keyEnd(); ++kind) {
      const auto& [formats, isEmpty] = *kind;
      samples_.add(isEmpty ? QString() : QString(textMark), {},
                   formats_.at(formats.first).toBlockFormat(),
                   formats_.at(formats.second).toCharFormat());
    }
  }

  [[nodiscard]] static bool learnEach(Letters& letters, const QString& each, QStringView line,
                                      QChar mark) {
    const QList<QStringView> written = line.split(mark);
    if (written.size() != each.size() + 2)
      return false;
    for (qsizetype place = 0; place < each.size(); ++place)
      letters.learn(each.at(place).unicode(), bytesOf(written.at(place + 1).toString()));
    return true;
  }

  [[nodiscard]] bool learnLetters() {
    const auto line = samples_.takeInner();
    return line && line->startsWith(textMark) && line->endsWith(textMark) &&
           learnEach(forms_.letters_, inTexts_.letters(), *line, textMark);
  }

  [[nodiscard]] bool learnTargetLetters() {
    return learnEach(targetLetters_, inTargets_.letters(), samples_.take(), targetMark);
  }

  [[nodiscard]] bool learnRuns() {
    std::vector<Look> looks;
    for (const QTextCharFormat& each : looks_.all()) {
      const auto look = takeLook(!each.anchorHref().isEmpty());
      if (!look)
        return false;
      looks.push_back(*look);
    }
    forms_.runs_.resize(uses_.size());
    for (std::size_t format = 0; format < uses_.size(); ++format) {
      const Use& use = uses_[format];
      if (use.look < 0)
        continue;
      const Look& look = looks[static_cast<std::size_t>(use.look)];
      Ends& run = forms_.runs_[format];
      run = {look.before, look.behind};
      targetLetters_.append(run.before, use.target);
      run.before += look.behindTarget;
    }
    return true;
  }

  [[nodiscard]] std::optional<Look> takeLook(bool isLink) {
    const auto line = samples_.takeInner();
    const auto ends = line ? HtmlSamples::endsOf(*line) : std::nullopt;
    if (!ends)
      return std::nullopt;
    if (!isLink)
      return Look{.before = bytesOf(ends->before), .behind = bytesOf(ends->behind)};
    const auto aroundTarget = HtmlSamples::endsOf(ends->before, targetMark);
    if (!aroundTarget)
      return std::nullopt;
    return Look{bytesOf(aroundTarget->before), bytesOf(aroundTarget->behind),
                bytesOf(ends->behind)};
  }

  [[nodiscard]] bool learnParagraphs() {
    for (auto kind = kinds_.begin(); kind != kinds_.end(); ++kind) {
      const QString line = u'\n' + samples_.take();
      if (kind.key().second) {
        kind->before = bytesOf(line);
      } else if (const auto ends = HtmlSamples::endsOf(line)) {
        *kind = {bytesOf(ends->before), bytesOf(ends->behind)};
      } else {
        return false;
      }
    }
    forms_.paragraphs_ = kinds_;
    return true;
  }

  QList<QTextFormat> formats_;
  HtmlSamples samples_;
  Alphabet inTexts_;
  Alphabet inTargets_;
  Looks looks_;
  std::vector<Use> uses_;  ///< by format
  QHash<ParagraphKind, Ends> kinds_;
  Letters targetLetters_;
  HtmlForms forms_;
};

std::optional<HtmlForms> HtmlForms::learn(const QTextDocument& document,
                                          const DocumentRuns& content) {
  return Learner(document, content).learn();
}

QByteArray HtmlForms::bytesOf(const QString& html) {
  return QString::fromLatin1(html.toLatin1()).toUtf8();
}

HtmlForms::ParagraphKind HtmlForms::kindOf(const DocumentRuns::Paragraph& paragraph) {
  return {{paragraph.blockFormat, paragraph.charFormat}, paragraph.runs == 0};
}

const HtmlForms::Ends& HtmlForms::around(const DocumentRuns::Paragraph& paragraph) const {
  return *paragraphs_.constFind(kindOf(paragraph));
}

const HtmlForms::Ends& HtmlForms::around(const DocumentRuns::Run& run) const {
  return runs_[static_cast<std::size_t>(run.format)];
}

void HtmlForms::Letters::learn(char16_t letter, const QByteArray& written) {
  if (letter < std::size(isItself_) && written.size() == 1 && written.front() == char(letter))
    isItself_[letter] = true;
  else
    others_.insert(letter, written);
}

void HtmlForms::Letters::append(QByteArray& bytes, QStringView text) const {
  const auto isItself = [this](QChar letter) {
    return letter.unicode() < std::size(isItself_) && isItself_[letter.unicode()];
  };
  for (const QChar* letter = text.begin(); letter != text.end();) {
    const QChar* const end = std::find_if_not(letter, text.end(), isItself);
    const qsizetype size = bytes.size();
    bytes.resize(size + (end - letter));
    std::transform(letter, end, bytes.begin() + size, [](QChar each) { return each.toLatin1(); });
    for (letter = end; letter != text.end() && !isItself(*letter); ++letter)
      bytes += others_.value(letter->unicode());
  }
}

}  // namespace kelmora::terminal

#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace kelmora::tools {

/// Something that a page of the guide tells its reader to do or to see.
struct GuideStep {
  enum class Kind {
    Type,      ///< lines for the input bar
    Alias,     ///< an entry of an editor: its name or pattern, and its commands
    Trigger,   ///
    Macro,     ///
    File,      ///< what a file of the client's folder is to hold
    Edit,      ///< an alias is edited and saved; detail: a key that is pressed in between
    Press,     ///< a key; detail: the name of the file that is asked for
    Switch,    ///< a box of the general settings, which is clicked
    Wheel,     ///< the mouse wheel, over the pane
    Seek,      ///< a key that opens the bar for it; detail: the words to find
    Menu,      ///< a click with the right button on words; detail: what is chosen then
    Restart,   ///< the client is closed and started again; subject: what a box says then
    Cut,       ///< the network lets a line wait behind these words of it
    Silence,   ///< who connects gets no answer any more
    See,       ///< lines that the pane shows, in this order
    DoNotSee,  ///< lines that it does not show
    Find,      ///< lines that a saved page shows, in this order
    Grey,      ///< buttons that cannot be pressed, by their keys
    NotGrey,   ///< one that can
    Divided,   ///< the pane is in two parts
    Whole,     ///< it is not
    Picture,   ///< a picture of what is seen now, by the name of its file
  };

  Kind kind;
  QString subject;
  QStringList lines;
  int place = 0;  ///< the line of the page, counted from 1
  QString detail = {};
};

/// The steps under one heading.
struct GuideSection {
  QString title;
  QList<GuideStep> steps;
};

/// A page of the guide, as far as it can be played. A step is a sentence that fills a
/// line of its own, such as "Type:" or "Press `Ctrl+J`.", most with a fenced block
/// behind it.
class GuidePage {
 public:
  explicit GuidePage(const QString& path);

  /// One for each "## " heading, also where it has no steps.
  [[nodiscard]] const QList<GuideSection>& sections() const& { return sections_; }
  const QList<GuideSection>& sections() const&& = delete;  // it would not live long enough
  /// What could not be understood, such as a block that belongs to no step.
  [[nodiscard]] const QStringList& faults() const& { return faults_; }

 private:
  void read(const QStringList& lines);

  QList<GuideSection> sections_;
  QStringList faults_;
};

}  // namespace kelmora::tools

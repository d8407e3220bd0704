#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// Something that a page of the guide tells its reader to do or to see.
struct GuideStep {
  enum class Kind {
    Type,      ///< lines for the input bar
    Alias,     ///< an entry of an editor: its name or pattern, and its commands
    Trigger,   ///
    Macro,     ///
    File,      ///< what a file of the client's folder is to hold
    Press,     ///< a key
    Switch,    ///< a box of the general settings, which is clicked
    Restart,   ///< the client is closed and started again; subject: what a box says then
    See,       ///< lines that the pane shows, in this order
    DoNotSee,  ///< lines that it does not show
  };

  Kind kind;
  QString subject;
  QStringList lines;
  int place = 0;  ///< the line of the page, counted from 1
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

  /// The sections that have steps. Their titles are those of the "## " headings.
  [[nodiscard]] const QList<GuideSection>& sections() const& { return sections_; }
  const QList<GuideSection>& sections() const&& = delete;  // it would not live long enough
  /// What could not be understood, such as a block that belongs to no step.
  [[nodiscard]] const QStringList& faults() const& { return faults_; }

 private:
  void read(const QStringList& lines);

  QList<GuideSection> sections_;
  QStringList faults_;
};

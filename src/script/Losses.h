#pragma once

#include <QSet>
#include <QString>

namespace kelmora::script {

class ScriptHost;

/// Tells the player what was lost because a limit was reached. The same loss is
/// told once in an event, because a loop may have it again in every round.
class Losses {
 public:
  /// Marks an event for as long as it lives. An event inside another one counts
  /// as part of it.
  class Event {
   public:
    explicit Event(Losses& losses) : losses_(losses) {
      if (losses_.events_++ == 0)
        losses_.told_.clear();
    }
    ~Event() { --losses_.events_; }
    Q_DISABLE_COPY_MOVE(Event)

   private:
    Losses& losses_;
  };

  /// The host must outlive this.
  explicit Losses(ScriptHost& host) : host_(host) {}
  Q_DISABLE_COPY_MOVE(Losses)

  /// Prints an error line of the loss. Does nothing and returns false if the same
  /// loss was told in this event.
  bool tell(const QString& loss);
  /// The same for a loss with one placeholder left, which stands for the beginning
  /// of what the loss is about. Whatever that is, it is the same loss.
  bool tell(const QString& loss, const QString& about);

 private:
  bool tellOnce(const QString& loss, const QString& line);

  ScriptHost& host_;
  int events_ = 0;
  QSet<QString> told_;
};

}  // namespace kelmora::script

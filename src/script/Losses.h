#pragma once

#include <QSet>
#include <QString>

namespace kelmora::script {

class ScriptHost;

/// Tells the player what a bound has cost, each loss once in an event: a loop
/// loses the same thing again and again.
class Losses {
 public:
  /// Lives as long as an event; those inside it belong to the outermost.
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

  /// The host outlives this.
  explicit Losses(ScriptHost& host) : host_(host) {}
  Q_DISABLE_COPY_MOVE(Losses)

  /// An error line made of both, unless one that began with `loss` was there in
  /// this event. Of what it is about, the start of its first line is shown.
  void tell(const QString& loss, const QString& about = {});

 private:
  ScriptHost& host_;
  int events_ = 0;
  QSet<QString> told_;
};

}  // namespace kelmora::script

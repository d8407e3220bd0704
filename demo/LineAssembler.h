#pragma once

#include <QByteArray>
#include <optional>

namespace kelmora::demo {

enum class LineCut { No, Yes };

/// Puts a player's bytes together into lines, whatever way they were cut on
/// the network. Telnet commands and NULs are dropped, a line keeps at most
/// kMaxLine bytes, so nothing a player sends makes it grow.
class LineAssembler {
 public:
  static constexpr int kMaxLine = 1024;

  struct Line {
    QByteArray bytes;
    LineCut cut = LineCut::No;
  };

  /// Takes one byte; yields the line that it ended, if it ended one.
  [[nodiscard]] std::optional<Line> take(char byte);

 private:
  enum class State { Text, Command, Option, Subnegotiation, SubnegotiationCommand };

  void takeText(unsigned char byte);
  [[nodiscard]] Line finished();

  State state_ = State::Text;
  QByteArray line_;
  LineCut cut_ = LineCut::No;
};

}  // namespace kelmora::demo

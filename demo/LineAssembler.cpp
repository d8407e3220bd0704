#include "demo/LineAssembler.h"

#include <utility>

namespace kelmora::demo {

namespace {

constexpr unsigned char kIac = 255;
constexpr unsigned char kDont = 254;
constexpr unsigned char kWill = 251;
constexpr unsigned char kSb = 250;
constexpr unsigned char kSe = 240;

}  // namespace

std::optional<LineAssembler::Line> LineAssembler::take(char byte) {
  const auto c = static_cast<unsigned char>(byte);
  // A line feed ends the line in every state: half a telnet command must not
  // swallow what the player types afterwards.
  if (c == '\n')
    return finished();
  switch (state_) {
    case State::Text:
      takeText(c);
      break;
    case State::Command:
      if (c == kSb)
        state_ = State::Subnegotiation;
      else
        state_ = c >= kWill && c <= kDont ? State::Option : State::Text;
      break;
    case State::Option:
      state_ = State::Text;
      break;
    case State::Subnegotiation:
      if (c == kIac)
        state_ = State::SubnegotiationCommand;
      break;
    case State::SubnegotiationCommand:
      state_ = c == kSe ? State::Text : State::Subnegotiation;
      break;
  }
  return std::nullopt;
}

void LineAssembler::takeText(unsigned char byte) {
  if (byte == kIac) {
    state_ = State::Command;
  } else if (byte == 0 || byte == '\r') {
    return;
  } else if (line_.size() < kMaxLine) {
    line_.append(static_cast<char>(byte));
  } else {
    cut_ = LineCut::Yes;
  }
}

LineAssembler::Line LineAssembler::finished() {
  state_ = State::Text;
  if (cut_ == LineCut::Yes) {
    // The cut may have gone through the last character: let it go, whole or not.
    qsizetype end = line_.size();
    while (end > 0 && (static_cast<unsigned char>(line_.at(end - 1)) & 0xC0U) == 0x80U)
      --end;
    if (end > 0 && static_cast<unsigned char>(line_.at(end - 1)) >= 0xC0U)
      line_.truncate(end - 1);
  }
  return {std::exchange(line_, QByteArray()), std::exchange(cut_, LineCut::No)};
}

}  // namespace kelmora::demo

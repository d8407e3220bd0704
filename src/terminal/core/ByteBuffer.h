#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <algorithm>
#include <cstring>

/// Bytes that only ever grow at their end. QByteArray can do that too, but goes
/// through its general insertion each time, which for the few bytes between two
/// blanks costs several times as much.
class ByteBuffer {
 public:
  ByteBuffer() = default;
  Q_DISABLE_COPY_MOVE(ByteBuffer)
  /// Room for so many bytes at first.
  explicit ByteBuffer(qsizetype room) { makeRoom(room); }

  ByteBuffer& operator+=(QByteArrayView bytes) {
    if (bytes.size() > room_ - size_)
      makeRoom(bytes.size());
    copy(begin_ + size_, bytes.data(), static_cast<std::size_t>(bytes.size()));
    size_ += bytes.size();
    return *this;
  }
  [[nodiscard]] QByteArrayView view() const { return {begin_, size_}; }
  [[nodiscard]] QByteArray take() && {
    bytes_.truncate(size_);
    return std::move(bytes_);
  }

 private:
  /// Most pieces are words; two copies of a known size that overlap are done
  /// before a call would have begun.
  static void copy(char* to, const char* from, std::size_t size) {
    if (size > 16) {
      std::memcpy(to, from, size);
    } else if (size >= 8) {
      std::memcpy(to, from, 8);
      std::memcpy(to + size - 8, from + size - 8, 8);
    } else if (size >= 4) {
      std::memcpy(to, from, 4);
      std::memcpy(to + size - 4, from + size - 4, 4);
    } else {
      for (std::size_t i = 0; i < size; ++i)
        to[i] = from[i];
    }
  }
  void makeRoom(qsizetype further) {
    bytes_.resize(std::max(size_ + further, 2 * room_));
    begin_ = bytes_.data();
    room_ = bytes_.size();
  }

  QByteArray bytes_;
  char* begin_ = nullptr;
  qsizetype room_ = 0;
  qsizetype size_ = 0;
};

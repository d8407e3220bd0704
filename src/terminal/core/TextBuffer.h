#pragma once

#include <QByteArray>
#include <QString>
#include <algorithm>
#include <type_traits>

namespace kelmora::terminal {

/// Collects bytes or characters. Appending to one of the toolkit's strings takes
/// several times as long when it is done a few bytes at a time, as here.
template <typename Text>
class TextBuffer {
 public:
  using Unit = std::conditional_t<std::is_same_v<Text, QString>, char16_t, char>;

  /// Begins with room for so many bytes or characters.
  explicit TextBuffer(qsizetype room) { makeRoom(room); }
  Q_DISABLE_COPY_MOVE(TextBuffer)

  /// Room for so many bytes or characters at the end. Having written some there, call
  /// added() with their number.
  [[nodiscard]] Unit* room(qsizetype units) {
    if (units > room_ - size_)
      makeRoom(units);
    return begin_ + size_;
  }
  void added(qsizetype units) { size_ += units; }
  TextBuffer& operator+=(Unit unit) {
    *room(1) = unit;
    ++size_;
    return *this;
  }
  TextBuffer& append(const Unit* units, qsizetype count) {
    std::copy_n(units, count, room(count));
    size_ += count;
    return *this;
  }
  /// Appends a byte array to bytes, or a string to characters.
  template <typename Units>
  TextBuffer& operator+=(const Units& units) {
    return append(reinterpret_cast<const Unit*>(units.data()), units.size());
  }

  [[nodiscard]] qsizetype size() const { return size_; }
  [[nodiscard]] const Unit* begin() const { return begin_; }
  [[nodiscard]] const Unit* end() const { return begin_ + size_; }
  void truncate(qsizetype size) { size_ = size; }
  [[nodiscard]] Text take() && {
    text_.truncate(size_);
    return std::move(text_);
  }

 private:
  void makeRoom(qsizetype further) {
    text_.resize(std::max(size_ + further, 2 * room_));
    begin_ = reinterpret_cast<Unit*>(text_.data());
    room_ = text_.size();
  }

  Text text_;
  Unit* begin_ = nullptr;
  qsizetype room_ = 0;
  qsizetype size_ = 0;
};

using ByteBuffer = TextBuffer<QByteArray>;

}  // namespace kelmora::terminal

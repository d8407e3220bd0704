#pragma once

#include <QtGlobal>

#if defined(__SSE2__) || defined(_M_X64)
#include <bit>
#include <emmintrin.h>
#define KELMORA_SIXTEEN_BYTES_AT_ONCE 1
#endif

namespace kelmora::terminal {

/// Most bytes of the game's text are shown as themselves, and these are copied many
/// at once. All others are special: controls, bytes outside ASCII, angle brackets,
/// ampersands, and the first of two blanks, slashes or "w". Doubled blanks keep their
/// width, and the other two may be part of a web address.
namespace ordinarybytes {

inline constexpr qsizetype atOnce = 16;

[[nodiscard]] constexpr bool isOrdinary(char byte) {
  return static_cast<signed char>(byte) >= ' ' && byte != '<' && byte != '>' && byte != '&';
}

[[nodiscard]] constexpr bool isSpecialWhenDoubled(char byte) {
  return byte == ' ' || byte == '/' || byte == 'w';
}

/// Copies the ordinary bytes at the beginning of a text, as bytes and as 16-bit
/// characters, and returns how many they are. Both destinations must have room for
/// `atOnce` more than `size`.
[[nodiscard]] inline qsizetype copy(const char* from, qsizetype size, char* bytes, char16_t* text) {
  qsizetype done = 0;
#ifdef KELMORA_SIXTEEN_BYTES_AT_ONCE
  const __m128i zero = _mm_setzero_si128();
  for (; size - done > atOnce; done += atOnce) {
    const auto load = [](const char* at) {
      return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    };
    const auto store = [](auto* at, __m128i value) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(at), value);
    };
    const __m128i these = load(from + done);
    const __m128i next = load(from + done + 1);
    store(bytes + done, these);
    store(text + done, _mm_unpacklo_epi8(these, zero));
    store(text + done + atOnce / 2, _mm_unpackhi_epi8(these, zero));
    const auto are = [these](char byte) { return _mm_cmpeq_epi8(these, _mm_set1_epi8(byte)); };
    const __m128i doubled = _mm_and_si128(_mm_cmpeq_epi8(these, next),
                                          _mm_or_si128(are(' '), _mm_or_si128(are('/'), are('w'))));
    const __m128i others = _mm_or_si128(_mm_cmplt_epi8(these, _mm_set1_epi8(' ')),
                                        _mm_or_si128(are('<'), _mm_or_si128(are('>'), are('&'))));
    const int places = _mm_movemask_epi8(_mm_or_si128(doubled, others));
    if (places != 0)
      return done + std::countr_zero(static_cast<unsigned>(places));
  }
#endif
  for (; done < size; ++done) {
    const char byte = from[done];
    const bool isDoubled = isSpecialWhenDoubled(byte) && done + 1 < size && from[done + 1] == byte;
    if (!isOrdinary(byte) || isDoubled)
      break;
    bytes[done] = byte;
    text[done] = static_cast<unsigned char>(byte);
  }
  return done;
}

}  // namespace ordinarybytes

}  // namespace kelmora::terminal

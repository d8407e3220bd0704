#include "scan/Format.h"

#include <algorithm>

#include "scan/Integer.h"

namespace kelmora::scan {

namespace {

QByteArrayView untilNul(QByteArrayView text) {
  const qsizetype nul = text.indexOf('\0');
  return nul < 0 ? text : text.first(nul);
}

std::size_t slot(char byte) {
  return static_cast<unsigned char>(byte);
}

}  // namespace

QByteArray Result::text(qsizetype field) const {
  if (field < 0 || field >= count())
    return {};
  const auto* bytes = std::get_if<QByteArray>(&fields_[field]);
  return bytes ? *bytes : QByteArray();
}

int Result::number(qsizetype field) const {
  if (field < 0 || field >= count())
    return 0;
  const auto* value = std::get_if<int>(&fields_[field]);
  return value ? *value : 0;
}

/// Turns the text of a format into steps.
struct Format::Compiler {
  QByteArrayView rest;
  std::vector<Step> steps = {};

  bool take(char byte) {
    if (!rest.startsWith(byte))
      return false;
    rest = rest.sliced(1);
    return true;
  }

  void addWhiteSpace() {
    while (!rest.isEmpty() && isSpace(rest.front()))
      rest = rest.sliced(1);
    steps.push_back({Kind::WhiteSpace});
  }

  void addLiteral() {
    const auto end = std::find_if(rest.begin(), rest.end(),
                                  [](char byte) { return byte == '%' || isSpace(byte); });
    const qsizetype length = end - rest.begin();
    steps.push_back({.kind = Kind::Literal, .literal = rest.first(length).toByteArray()});
    rest = rest.sliced(length);
  }

  bool addConversion() {
    const bool suppressed = take('*');
    if (take('d')) {
      steps.push_back({Kind::Number, suppressed});
    } else if (take('s')) {
      steps.push_back({Kind::Word, suppressed});
    } else if (take('[')) {
      return take('^') && addSet(suppressed);
    } else if (!suppressed && take('%')) {
      steps.push_back({Kind::Percent});
    } else {
      return false;
    }
    return true;
  }

  bool addSet(bool suppressed) {
    // A "]" in the first place is a member of the set and does not end it.
    const qsizetype end = rest.indexOf(']', 1);
    if (end < 1 || rest.first(end).contains('-'))
      return false;
    Step step{.kind = Kind::UntilOneOf, .suppressed = suppressed};
    for (const char byte : rest.first(end))
      step.stops.set(slot(byte));
    steps.push_back(std::move(step));
    rest = rest.sliced(end + 1);
    return true;
  }

  bool compile() {
    while (!rest.isEmpty()) {
      if (isSpace(rest.front()))
        addWhiteSpace();
      else if (!take('%'))
        addLiteral();
      else if (!addConversion())
        return false;
    }
    return true;
  }
};

/// The part of the scanned text that is still to be read.
struct Format::Cursor {
  QByteArrayView rest;

  bool take(char byte) {
    if (!rest.startsWith(byte))
      return false;
    rest = rest.sliced(1);
    return true;
  }

  void skipWhiteSpace() {
    const auto word = std::find_if_not(rest.begin(), rest.end(), isSpace);
    rest = rest.sliced(word - rest.begin());
  }

  bool takeLiteral(QByteArrayView literal) {
    if (!rest.startsWith(literal))
      return false;
    rest = rest.sliced(literal.size());
    return true;
  }

  std::optional<int> takeNumber() {
    skipWhiteSpace();
    auto sign = DecimalSum::Sign::Plus;
    if (take('-'))
      sign = DecimalSum::Sign::Minus;
    else
      take('+');
    const auto end = std::find_if_not(rest.begin(), rest.end(), isDigit);
    if (end == rest.begin())
      return std::nullopt;
    DecimalSum sum(sign);
    for (auto digit = rest.begin(); digit != end; ++digit)
      sum.addDigit(*digit);
    rest = rest.sliced(end - rest.begin());
    return sum.toInt();
  }

  /// Takes the bytes up to the first that ends the field, but no more than the limit.
  template <typename Ends>
  QByteArrayView takeUntil(Ends ends, qsizetype limit) {
    const auto last = rest.begin() + std::min(limit, rest.size());
    const qsizetype length = std::find_if(rest.begin(), last, ends) - rest.begin();
    const QByteArrayView field = rest.first(length);
    rest = rest.sliced(length);
    return field;
  }
};

std::optional<Format> Format::compile(QByteArrayView format, qsizetype fieldLimit) {
  Compiler compiler{untilNul(format)};
  if (fieldLimit < 1 || !compiler.compile())
    return std::nullopt;
  Format compiled;
  compiled.steps_ = std::move(compiler.steps);
  compiled.fieldLimit_ = fieldLimit;
  compiled.fieldCount_ =
      std::count_if(compiled.steps_.begin(), compiled.steps_.end(), [](const Step& step) {
        return !step.suppressed && (step.kind == Kind::Number || step.kind == Kind::Word ||
                                    step.kind == Kind::UntilOneOf);
      });
  return compiled;
}

Result Format::scan(QByteArrayView input) const {
  Result result(fieldCount_);
  Cursor cursor{untilNul(input)};
  for (const Step& step : steps_)
    if (!run(step, cursor, result))
      break;
  return result;
}

bool Format::run(const Step& step, Cursor& cursor, Result& result) const {
  // A field that is thrown away takes no memory, so it is read to its end.
  const qsizetype limit = step.suppressed ? cursor.rest.size() : fieldLimit_;
  const auto assignText = [&](QByteArrayView field) {
    if (!step.suppressed && !field.isEmpty())
      result.append(field.toByteArray());
    return !field.isEmpty();
  };
  switch (step.kind) {
    case Kind::Literal:
      return cursor.takeLiteral(step.literal);
    case Kind::WhiteSpace:
      cursor.skipWhiteSpace();
      return true;
    case Kind::Percent:
      // A quirk of scanf: "%%" skips blanks first, as other conversions do.
      cursor.skipWhiteSpace();
      return cursor.take('%');
    case Kind::Number: {
      const std::optional<int> number = cursor.takeNumber();
      if (number && !step.suppressed)
        result.append(*number);
      return number.has_value();
    }
    case Kind::Word:
      cursor.skipWhiteSpace();
      return assignText(cursor.takeUntil(isSpace, limit));
    case Kind::UntilOneOf:
      return assignText(
          cursor.takeUntil([&](char byte) { return step.stops.test(slot(byte)); }, limit));
  }
  return false;
}

}  // namespace kelmora::scan

#include "script/Comparisons.h"

#include <QString>

namespace kelmora::script {

bool compare(Comparison comparison, const QString& first, const QString& second) {
  switch (comparison) {
    case Comparison::Equal:
      return first == second;
    case Comparison::NotEqual:
      return first != second;
    case Comparison::Less:
      return first.toFloat() < second.toFloat();
    case Comparison::Greater:
      return first.toFloat() > second.toFloat();
    case Comparison::LessOrEqual:
      return first.toFloat() <= second.toFloat();
    case Comparison::GreaterOrEqual:
      break;
  }
  return first.toFloat() >= second.toFloat();
}

}  // namespace kelmora::script

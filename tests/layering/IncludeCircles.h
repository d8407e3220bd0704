#pragma once

#include <QList>
#include <QStringList>

#include "layering/SourceTree.h"

/// Names that can all be reached from one another, in alphabetical order.
using Circle = QStringList;

/// Headers that include one another in a circle, one that includes itself, too.
[[nodiscard]] QList<Circle> headerCircles(const SourceTree& tree);

/// Units that need one another in a circle. A unit is a header with its source,
/// such as "script/Commands"; it needs what either of them includes. A source
/// without a header of its own belongs to the class whose members it defines.
[[nodiscard]] QList<Circle> unitCircles(const SourceTree& tree);

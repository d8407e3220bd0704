// What most sources of the window include, compiled once.
#include "core.h"

#include <QtWidgets>

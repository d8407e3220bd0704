// What most tests of fonts and colours include, compiled once.
#include "core_tests.h"

#include <QColor>
#include <QFont>
#include <QGuiApplication>

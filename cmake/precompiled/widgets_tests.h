// What most tests of the window include, compiled once.
#include "widgets.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

// What most tests of rules include, compiled once.
#include "core.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

// Makes a test class part of its program: name it in one of these macros at the end
// of its file, with the application that it needs.
#pragma once

#include <QCoreApplication>
#include <QTest>

#include "support/ScratchFolder.h"
#include "support/TestRunner.h"

#define KELMORA_MAIN_WITH(Application, TestClass)                 \
  static const kelmora_tests::Registration registered##TestClass( \
      __FILE__, [](int argc, char** argv) {                       \
        const ScratchFolder scratch;                              \
        if (!scratch.isValid())                                   \
          return 1;                                               \
        Application app(argc, argv);                              \
        TestClass test;                                           \
        return QTest::qExec(&test, argc, argv);                   \
      });

/// For rules: no window system, not even an offscreen one.
#define KELMORA_TEST_MAIN(TestClass) KELMORA_MAIN_WITH(QCoreApplication, TestClass)
/// For values that need fonts or colours (include <QGuiApplication>).
#define KELMORA_VALUE_TEST_MAIN(TestClass) KELMORA_MAIN_WITH(QGuiApplication, TestClass)
/// For widgets (include <QApplication>).
#define KELMORA_GUI_TEST_MAIN(TestClass) KELMORA_MAIN_WITH(QApplication, TestClass)

// How the test classes of a program make themselves known to its main.
#pragma once

namespace kelmora_tests {

/// A test class of this program; its name is that of its file, "tst_x" for
/// tst_x.cpp.
class Registration {
 public:
  using Run = int (*)(int argc, char** argv);
  /// The file's name outlives the program's main.
  Registration(const char* file, Run run);
};

}  // namespace kelmora_tests

// The main of every test program: "test_room tst_x [Qt Test's arguments]" runs
// one class in a process of its own, so that none meets what another left.
#include "support/TestRunner.h"

#include <cstdio>
#include <map>
#include <string>

namespace {

std::map<std::string, kelmora_tests::Registration::Run>& classes() {
  static std::map<std::string, kelmora_tests::Registration::Run> all;
  return all;
}

}  // namespace

namespace kelmora_tests {

Registration::Registration(const char* file, Run run) {
  const std::string path(file);
  const auto begin = path.find_last_of("/\\") + 1;
  classes()[path.substr(begin, path.find_last_of('.') - begin)] = run;
}

}  // namespace kelmora_tests

int main(int argc, char** argv) {
  const auto chosen = argc > 1 ? classes().find(argv[1]) : classes().end();
  if (chosen != classes().end()) {
    argv[1] = argv[0];
    return chosen->second(argc - 1, argv + 1);
  }
  std::fprintf(stderr, "usage: %s TEST [arguments of Qt Test], TEST one of:\n", argv[0]);
  for (const auto& [name, run] : classes())
    std::fprintf(stderr, "  %s\n", name.c_str());
  return 2;
}

// Without memory a program says so and ends at once, wherever it is: the streams and libraries in
// between would take a failed allocation for the end of what they read, or end the process in words
// of their own. Each program compiles this for itself, with its name as ROVA_PROGRAM.
#include "sources/Unfinished.h"

#include <cstdlib>
#include <new>
#include <string_view>
#include <unistd.h>

namespace {

void endWithoutMemory() {
  constexpr std::string_view message = ROVA_PROGRAM ": there is not enough memory\n";
  sources::removeUnfinished();
  if (write(STDERR_FILENO, message.data(), message.size()) < 0) _exit(EXIT_FAILURE);
  _exit(EXIT_FAILURE);
}

void install(int, char**, char**) { std::set_new_handler(endWithoutMemory); }

// The libraries that the program loads allocate in their initialisers, which run ahead of its own.
using Initialiser = void (*)(int, char**, char**);
[[gnu::section(".preinit_array"), gnu::used]] const Initialiser first = install;

} // namespace

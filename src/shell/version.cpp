#include "shell/version.h"

std::string VersionText() {
  return std::string("Brask v") + VERSION_NUMBER + " (" + __DATE__ + ", " + __TIME__ + ")\n" +
         "build: Brask with variable search extensions\n"
         "\ninline assembler:       disabled\n"
         "move generator cache:   disabled\n"
         "tablebase support:      enabled\n"
         "architecture:           i386 compatible"
         "\nplatform:               Unix"
         "\n"
         "\n"
         "Written by " + AUTHORS + ".\n";
}

// The command line: devstore --port N --data DIR.
#ifndef DEVSTORE_OPTIONS_H
#define DEVSTORE_OPTIONS_H

#include <optional>
#include <string>

namespace devstore {

struct Options {
  // 0 takes any free port; the one taken is printed at start.
  int port = 0;
  std::string data;

  // Nothing, with the reason in `error`, for a command line that cannot be run.
  static std::optional<Options> parse(int argc, char **argv, std::string *error);
  static const char *usage();
};

}  // namespace devstore

#endif

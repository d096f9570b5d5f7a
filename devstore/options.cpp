#include "options.h"

#include <cstdlib>

namespace devstore {

std::optional<Options> Options::parse(int argc, char **argv, std::string *error) {
  Options options;
  bool hasPort = false;
  for (int i = 1; i < argc; ++i) {
    const std::string name = argv[i];
    if ((name != "--port" && name != "--data") || i + 1 >= argc) {
      *error = "unknown or incomplete argument: " + name;
      return std::nullopt;
    }
    const std::string value = argv[++i];
    if (name == "--data") {
      options.data = value;
      continue;
    }
    char *end = nullptr;
    const long port = std::strtol(value.c_str(), &end, 10);
    if (value.empty() || *end != '\0' || port < 0 || port > 65535) {
      *error = "not a port number: " + value;
      return std::nullopt;
    }
    options.port = static_cast<int>(port);
    hasPort = true;
  }
  if (!hasPort || options.data.empty()) {
    *error = "both --port and --data are needed";
    return std::nullopt;
  }
  return options;
}

const char *Options::usage() {
  return "usage: devstore --port N --data DIR\n"
         "  Serves the local storefront on http://127.0.0.1:N/ (N = 0: any free port),\n"
         "  with its database and covers in DIR, seeded on first start.\n";
}

}  // namespace devstore

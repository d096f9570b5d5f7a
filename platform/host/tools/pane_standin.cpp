// Stands for the device's spawn_pane.app and webpane.app, linked under both names: each records
// in the task journal what it was asked to do. spawn_pane.app then starts the pane it names
// ("<pane path> <pane name> <pane arguments...>"); webpane.app records what it would show (its
// last argument) and ends.
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "device_path.h"
#include "task_journal.h"

using lumenpress::platform::TaskJournal;

namespace {

std::string programName(const char *path) {
  const std::string whole(path);
  return whole.substr(whole.find_last_of('/') + 1);
}

int startPane(int argc, char **argv) {
  if (argc < 3) return 2;
  const std::string pane = lumenpress::platform::MapDevicePath(argv[1]);
  std::vector<char *> pane_argv = {const_cast<char *>(pane.c_str())};
  for (int i = 3; i < argc; ++i) pane_argv.push_back(argv[i]);
  pane_argv.push_back(nullptr);
  execv(pane.c_str(), pane_argv.data());
  std::perror(pane.c_str());
  return 1;
}

}  // namespace

int main(int argc, char **argv) {
  const std::string name = programName(argv[0]);
  Json::Value members;
  members["argv"] = TaskJournal::list(argc - 1, argv + 1);
  if (name == "webpane.app" && argc > 1) members["opens"] = argv[argc - 1];
  TaskJournal::append(name, members);
  return name == "spawn_pane.app" ? startPane(argc, argv) : 0;
}

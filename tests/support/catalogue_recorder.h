// Records what a DataManager reports, and runs its result queue as the application's timer would.
#ifndef LUMENPRESS_TESTS_CATALOGUE_RECORDER_H
#define LUMENPRESS_TESTS_CATALOGUE_RECORDER_H

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "opds/data_manager.h"

namespace lumenpress::testing {

class CatalogueRecorder : public opds::IDataManagerCallback {
public:
  struct Book {
    int error;
    std::shared_ptr<opds::OPDS::Entry> entry;
    std::string file;
  };

  void ListLoaded(int error, std::shared_ptr<opds::ItemsList> list) override;
  void DownloadProgress(std::shared_ptr<opds::OPDS::Entry>, int) override {}
  void BookLoaded(int error, std::shared_ptr<opds::OPDS::Entry> entry, const std::string &file) override;

  // Runs ProcessResults until `done` holds, for at most ten seconds.
  static bool pump(opds::DataManager &manager, const std::function<bool()> &done);
  static bool loaded(const std::shared_ptr<opds::ItemsList> &list) { return list && !list->loading; }

  // Callbacks run inside ProcessResults on the test's thread, so these need no lock.
  std::vector<std::pair<int, std::shared_ptr<opds::ItemsList>>> lists;
  std::vector<Book> books;
};

}  // namespace lumenpress::testing

#endif

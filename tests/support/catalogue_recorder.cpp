#include "catalogue_recorder.h"

#include <chrono>
#include <thread>

namespace lumenpress::testing {

void CatalogueRecorder::ListLoaded(int error, std::shared_ptr<opds::ItemsList> list) {
  lists.emplace_back(error, std::move(list));
}

void CatalogueRecorder::BookLoaded(int error, std::shared_ptr<opds::OPDS::Entry> entry, const std::string &file) {
  books.push_back({error, std::move(entry), file});
}

bool CatalogueRecorder::pump(opds::DataManager &manager, const std::function<bool()> &done) {
  for (int i = 0; i < 2000 && !done(); ++i) {
    manager.ProcessResults();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return done();
}

}  // namespace lumenpress::testing

// Builds a ZIP archive in memory: what e-books (EPUB) and audio bundles are made of.
#ifndef DEVSTORE_ZIP_WRITER_H
#define DEVSTORE_ZIP_WRITER_H

#include <cstdint>
#include <string>

namespace devstore {

class ZipWriter {
public:
  // `compress` false stores the file as it is, as EPUB requires for its "mimetype".
  void add(const std::string &name, const std::string &data, bool compress = true);
  // The whole archive; the writer is spent afterwards.
  std::string finish();

private:
  std::string archive_;
  std::string directory_;
  uint16_t count_ = 0;
};

}  // namespace devstore

#endif

// Whether a downloaded book is whole, where its format tells without a reader: a ZIP-based
// book (EPUB, CBZ, zipped FB2 ...) ends in the ZIP's end-of-central-directory record, a PDF
// in "%%EOF". A server that announces a short length delivers a cut book as if complete.
#ifndef LUMENPRESS_HOST_OPDS_BOOK_FILE_CHECK_H
#define LUMENPRESS_HOST_OPDS_BOOK_FILE_CHECK_H

#include <string>

namespace lumenpress::opds {

class BookFileCheck {
public:
  // The format comes from the file's first bytes, else from its name, else from its MIME type.
  // False only for a file of such a format that does not end as the format must.
  static bool looksWhole(const std::string &path, const std::string &name, const std::string &mime);
};

}  // namespace lumenpress::opds

#endif

// Whether a downloaded book is whole, where its format tells without a reader: a ZIP-based
// book (EPUB, CBZ, zipped FB2 ...) ends in the ZIP's end-of-central-directory record, a PDF
// in "%%EOF". A server that announces a short length delivers a cut book as if complete.
#ifndef LUMENPRESS_HOST_OPDS_BOOK_FILE_CHECK_H
#define LUMENPRESS_HOST_OPDS_BOOK_FILE_CHECK_H

#include <string>

namespace lumenpress::opds {

class BookFileCheck {
public:
  // The file's first bytes tell its format, whatever its name or type claim. A file that does
  // not begin as a ZIP or a PDF passes: an error document or a web page in place of a book is
  // for the program to judge, and other formats cannot be checked here.
  static bool looksWhole(const std::string &path);
};

}  // namespace lumenpress::opds

#endif

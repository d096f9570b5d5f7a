// The files the store delivers: e-books, samples, audio books and fulfilment tokens,
// made on request from the book's record.
#ifndef DEVSTORE_BOOK_FILES_H
#define DEVSTORE_BOOK_FILES_H

#include <string>

#include "records.h"

namespace devstore {

class BookFiles {
public:
  // The book in its own format; a sample holds the first chapter only.
  static std::string make(const BookRecord &book, bool sample);
  // A fulfilment token that names where the book itself is fetched.
  static std::string acsmToken(const BookRecord &book, const std::string &downloadUrl);
  // The name a download is saved under, such as "The Silent River.epub".
  static std::string fileName(const BookRecord &book, bool sample);

private:
  static std::string epub(const BookRecord &book, int chapters);
  static std::string pdf(const BookRecord &book);
  static std::string mp3(int frames);
  static std::string audioZip(const BookRecord &book);
};

}  // namespace devstore

#endif

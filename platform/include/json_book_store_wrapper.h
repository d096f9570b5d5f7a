// The store's record of a book, as the device's library keeps it with the file.
#ifndef LUMENPRESS_JSON_BOOK_STORE_WRAPPER_H
#define LUMENPRESS_JSON_BOOK_STORE_WRAPPER_H

#include <string>

namespace lumenpress {

class JsonBookStoreWrapper {
public:
  void setBookId(const std::string &id);
  // Currency code, one space, the price with a point.
  void setPrice(const std::string &price);
  void setOldPrice(const std::string &price);
  void setStoreId(const std::string &store_id);
  // Seconds since the epoch as decimal text.
  void setTime(const std::string &time);
  std::string Generate() const;

private:
  std::string book_id_;
  std::string price_;
  std::string old_price_;
  std::string store_id_;
  std::string time_;
};

}  // namespace lumenpress

#endif

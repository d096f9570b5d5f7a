// The cover images of a collection.
#ifndef LUMENPRESS_OPDS_GROUPED_IMG_H
#define LUMENPRESS_OPDS_GROUPED_IMG_H

#include <string>
#include <vector>

namespace lumenpress::opds::OPDS {

class GroupedImg {
public:
  // Relative URLs of the collection's covers.
  const std::vector<std::string> &getGroupedImg() const { return images_; }
  void addImage(const std::string &href) { images_.push_back(href); }

private:
  std::vector<std::string> images_;
};

}  // namespace lumenpress::opds::OPDS

#endif

// Tags the device keeps on books and accounts in its database.
#ifndef LUMENPRESS_FRAMEWORK_LPDB_TAGS_H
#define LUMENPRESS_FRAMEWORK_LPDB_TAGS_H

#include <string>

class LPDBTags {
public:
  void setMode(int mode);
  bool removeTag2(const std::string &tag);
};

#endif

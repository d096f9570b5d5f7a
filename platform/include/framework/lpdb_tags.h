// Tags the device keeps in its database, each under a mode: on books, or on the device itself
// (such as a service whose consent waits for an account).
#ifndef LUMENPRESS_FRAMEWORK_LPDB_TAGS_H
#define LUMENPRESS_FRAMEWORK_LPDB_TAGS_H

#include <string>

class LPDBTags {
public:
  enum Mode { kBookTags = 0, kDeviceTags = 1 };

  // The mode the following calls work in.
  void setMode(int mode);
  bool addTag2(const std::string &tag);
  // False only when the database could not be changed; a tag that was not there is no fault.
  bool removeTag2(const std::string &tag);

private:
  int mode_ = kBookTags;
};

#endif

// Text put into HTML or XML built by hand.
#ifndef DEVSTORE_MARKUP_TEXT_H
#define DEVSTORE_MARKUP_TEXT_H

#include <string>

namespace devstore {

class MarkupText {
public:
  // &, <, > and " as entities, so the text can stand in content and in quoted attributes.
  static std::string escape(const std::string &text);
};

}  // namespace devstore

#endif

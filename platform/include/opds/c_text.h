// Text of a catalogue record that readers take as a C string.
#ifndef LUMENPRESS_OPDS_C_TEXT_H
#define LUMENPRESS_OPDS_C_TEXT_H

#include <string>

namespace lumenpress::opds {

class CText {
public:
  CText() = default;
  CText(std::string text) : text_(std::move(text)) {}

  operator const char *() const { return text_.c_str(); }
  const char *c_str() const { return text_.c_str(); }
  const std::string &str() const { return text_; }
  bool empty() const { return text_.empty(); }

private:
  std::string text_;
};

}  // namespace lumenpress::opds

#endif

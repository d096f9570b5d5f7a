#include "json_text.h"

#include <memory>

namespace devstore {

std::string JsonText::write(const Json::Value &value) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "";
  builder["emitUTF8"] = true;
  return Json::writeString(builder, value);
}

bool JsonText::parse(const std::string &text, Json::Value *value) {
  Json::CharReaderBuilder builder;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  std::string errors;
  if (reader->parse(text.data(), text.data() + text.size(), value, &errors)) return true;
  *value = Json::Value();
  return false;
}

}  // namespace devstore

#include "cfg_wrapper.h"

#include <utility>

namespace lumenpress::utilities {

CfgWrapper::CfgWrapper(const std::string &path, int mode) : cfg_(OpenConfig(path.c_str(), mode)) {}

CfgWrapper::~CfgWrapper() {
  closeNoSave();
}

CfgWrapper::CfgWrapper(CfgWrapper &&other) noexcept : cfg_(std::exchange(other.cfg_, nullptr)) {}

CfgWrapper &CfgWrapper::operator=(CfgWrapper &&other) noexcept {
  if (this != &other) {
    closeNoSave();
    cfg_ = std::exchange(other.cfg_, nullptr);
  }
  return *this;
}

bool CfgWrapper::save() {
  return cfg_ && SaveConfig(cfg_) == 0;
}

bool CfgWrapper::saveAndClose() {
  return cfg_ && CloseConfig(std::exchange(cfg_, nullptr)) == 0;
}

void CfgWrapper::closeNoSave() {
  CloseConfigNoSave(std::exchange(cfg_, nullptr));
}

void CfgWrapper::remove(const std::string &key) {
  DeleteConfigKey(cfg_, key.c_str());
}

std::vector<std::string> CfgWrapper::getKeys() const {
  std::vector<std::string> keys;
  const int count = GetConfigKeyCount(cfg_);
  for (int i = 0; i < count; ++i) keys.emplace_back(GetConfigKey(cfg_, i));
  return keys;
}

template <>
std::string CfgWrapper::read<std::string>(const std::string &key, const std::string &deflt) const {
  return ReadString(cfg_, key.c_str(), deflt.c_str());
}

template <>
int CfgWrapper::read<int>(const std::string &key, const int &deflt) const {
  return ReadInt(cfg_, key.c_str(), deflt);
}

template <>
std::string CfgWrapper::read<CfgSecret>(const std::string &key, const std::string &deflt) const {
  return ReadSecret(cfg_, key.c_str(), deflt.c_str());
}

template <>
void CfgWrapper::write<std::string>(const std::string &key, const std::string &value) {
  WriteString(cfg_, key.c_str(), value.c_str());
}

template <>
void CfgWrapper::write<int>(const std::string &key, const int &value) {
  WriteInt(cfg_, key.c_str(), value);
}

template <>
void CfgWrapper::write<CfgSecret>(const std::string &key, const std::string &value) {
  WriteSecret(cfg_, key.c_str(), value.c_str());
}

}  // namespace lumenpress::utilities

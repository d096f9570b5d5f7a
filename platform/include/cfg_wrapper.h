// A configuration file of the device held open for the life of an object.
#ifndef LUMENPRESS_CFG_WRAPPER_H
#define LUMENPRESS_CFG_WRAPPER_H

#include <string>
#include <vector>

#include "panelkit.h"

namespace lumenpress::utilities {

// Tag for read<CfgSecret> and write<CfgSecret>: the value is kept protected in the file.
struct CfgSecret {};

template <typename T>
struct CfgValue {
  using type = T;
};

template <>
struct CfgValue<CfgSecret> {
  using type = std::string;
};

class CfgWrapper {
public:
  // mode 0 reads an existing file; mode 1 reads and writes, starting empty when it is missing.
  CfgWrapper(const std::string &path, int mode);
  // Closes without saving.
  ~CfgWrapper();
  CfgWrapper(const CfgWrapper &) = delete;
  CfgWrapper &operator=(const CfgWrapper &) = delete;
  CfgWrapper(CfgWrapper &&other) noexcept;
  CfgWrapper &operator=(CfgWrapper &&other) noexcept;

  bool isOpen() const { return cfg_ != nullptr; }
  // Null when closed; the C functions take it as a harmless no-op then.
  operator lpconfig *() const { return cfg_; }

  bool save();
  bool saveAndClose();
  void closeNoSave();
  void remove(const std::string &key);
  std::vector<std::string> getKeys() const;

  // For std::string, int and CfgSecret (read as std::string); the default when closed or missing.
  template <typename T>
  typename CfgValue<T>::type read(const std::string &key, const typename CfgValue<T>::type &deflt) const;
  template <typename T>
  void write(const std::string &key, const typename CfgValue<T>::type &value);

private:
  lpconfig *cfg_ = nullptr;
};

template <>
std::string CfgWrapper::read<std::string>(const std::string &key, const std::string &deflt) const;
template <>
int CfgWrapper::read<int>(const std::string &key, const int &deflt) const;
template <>
std::string CfgWrapper::read<CfgSecret>(const std::string &key, const std::string &deflt) const;

template <>
void CfgWrapper::write<std::string>(const std::string &key, const std::string &value);
template <>
void CfgWrapper::write<int>(const std::string &key, const int &value);
template <>
void CfgWrapper::write<CfgSecret>(const std::string &key, const std::string &value);

}  // namespace lumenpress::utilities

#endif

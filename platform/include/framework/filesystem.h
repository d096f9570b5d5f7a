// File operations of the framework that keep the device's library informed.
#ifndef LUMENPRESS_FRAMEWORK_FILESYSTEM_H
#define LUMENPRESS_FRAMEWORK_FILESYSTEM_H

#include <string>

namespace lumenpress::system::filesystem {

bool MoveFile(const std::string &from, const std::string &to);
bool CopyFile(const std::string &from, const std::string &to);

}  // namespace lumenpress::system::filesystem

#endif

// The disk cache of covers in the device's form, shared by every cover request of the process.
#ifndef LUMENPRESS_APP_COVER_CACHE_H
#define LUMENPRESS_APP_COVER_CACHE_H

#include <string>

#include "file_cache.h"

// Made on first use; keys are cover URLs.
lumenpress::utilities::FileCache &coverCache();

// Device path of the cached cover of a URL, without fetching anything; empty when unknown.
std::string coverFilePath(const std::string &url);

#endif

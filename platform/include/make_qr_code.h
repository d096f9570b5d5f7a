// QR codes for signing in from a phone and for the store apps' addresses.
#ifndef LUMENPRESS_MAKE_QR_CODE_H
#define LUMENPRESS_MAKE_QR_CODE_H

#include <string>

#include "smart_bitmap.h"

namespace lumenpress::utilities {

// A square bitmap of the given size in pixels; empty when the text cannot be encoded.
SmartBitmap MakeQrCode(const std::string &text, int size);

}  // namespace lumenpress::utilities

#endif

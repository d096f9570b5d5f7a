// What a device bitmap is on a PC: a named grey picture, one byte a pixel, rows top down.
#ifndef LUMENPRESS_HOST_BITMAP_H
#define LUMENPRESS_HOST_BITMAP_H

#include <cstdint>
#include <string>
#include <vector>

struct lpbitmap {
  std::string name;
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pixels;
};

#endif

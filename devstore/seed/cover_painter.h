// Draws a book's cover: its title and author on a plain background.
#ifndef DEVSTORE_COVER_PAINTER_H
#define DEVSTORE_COVER_PAINTER_H

#include <string>

namespace devstore {

class CoverPainter {
public:
  // JPEG bytes of a width x height cover in a colour chosen by `hue` (0-359); empty when
  // the image cannot be encoded. Needs a QGuiApplication for its fonts.
  static std::string paint(const std::string &title, const std::string &author, int width, int height, int hue);
};

}  // namespace devstore

#endif

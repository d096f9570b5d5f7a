// The device's direct drawing on a PC: each call is journalled and reaches the panel canvas.
#include "host_bitmap.h"
#include "panel_canvas.h"
#include "panelkit_draw.h"
#include "task_journal.h"

using lumenpress::platform::PanelCanvas;
using lumenpress::platform::TaskJournal;

namespace {

Json::Value area(int x, int y, int width, int height) {
  Json::Value members;
  members["x"] = x;
  members["y"] = y;
  members["width"] = width;
  members["height"] = height;
  return members;
}

}  // namespace

extern "C" int ScreenWidth(void) {
  return PanelCanvas::kWidth;
}

extern "C" int ScreenHeight(void) {
  return PanelCanvas::kHeight;
}

extern "C" int PanelHeight(void) {
  return PanelCanvas::kPanelHeight;
}

extern "C" void SetPanelType(int type) {
  Json::Value members;
  members["type"] = type;
  TaskJournal::append("SetPanelType", members);
}

extern "C" void FillArea(int x, int y, int width, int height, int color) {
  PanelCanvas::instance().fill(x, y, width, height, color);
  Json::Value members = area(x, y, width, height);
  members["color"] = color;
  TaskJournal::append("FillArea", members);
}

extern "C" void DrawBitmap(int x, int y, const lpbitmap *bitmap) {
  if (!bitmap) return;
  PanelCanvas::instance().draw(x, y, *bitmap);
  Json::Value members = area(x, y, bitmap->width, bitmap->height);
  members["bitmap"] = bitmap->name;
  TaskJournal::append("DrawBitmap", members);
}

extern "C" void PartialUpdate(int x, int y, int width, int height) {
  Json::Value members = area(x, y, width, height);
  members["written"] = PanelCanvas::instance().update();
  TaskJournal::append("PartialUpdate", members);
}

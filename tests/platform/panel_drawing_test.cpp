// Direct drawing on a PC: what the calls leave on the panel's picture, clipped at its edges.
#include <gtest/gtest.h>

#include <QImage>
#include <fstream>

#include "device_path.h"
#include "panelkit_draw.h"
#include "smart_bitmap.h"

using lumenpress::platform::DeviceRoot;
using lumenpress::utilities::SmartBitmap;

namespace {

QImage panel() {
  return QImage(QString::fromStdString(DeviceRoot() + "/host/panel.png"));
}

int journalLines(const std::string &call) {
  std::ifstream in(DeviceRoot() + "/host/task_journal.jsonl");
  int count = 0;
  for (std::string line; std::getline(in, line);) count += line.find("\"call\":\"" + call + "\"") != std::string::npos;
  return count;
}

}  // namespace

TEST(PanelDrawing, SplashResourceIsAGreyPictureThatCanBeInverted) {
  const SmartBitmap splash("splash_screen", false);
  ASSERT_FALSE(splash.empty());
  EXPECT_GT(splash.width(), 100);
  EXPECT_GT(splash.height(), 100);
  const SmartBitmap inverted("splash_screen", true);
  ASSERT_EQ(inverted.width(), splash.width());

  FillArea(0, 0, ScreenWidth(), ScreenHeight(), 0x00FFFFFF);
  DrawBitmap(0, 0, splash.get());
  DrawBitmap(splash.width(), 0, inverted.get());
  PartialUpdate(0, 0, ScreenWidth(), ScreenHeight());
  const QImage shown = panel();
  ASSERT_EQ(shown.size(), QSize(ScreenWidth(), ScreenHeight()));
  EXPECT_EQ(qGray(shown.pixel(1, 1)), 255) << "the splash's corner is white";
  EXPECT_EQ(qGray(shown.pixel(splash.width() + 1, 1)), 0) << "and black inverted";

  EXPECT_TRUE(SmartBitmap("no_such_picture").empty());
  DrawBitmap(0, 0, nullptr);
  EXPECT_EQ(journalLines("DrawBitmap"), 2);
}

TEST(PanelDrawing, DrawingBeyondTheEdgesIsCutOff) {
  FillArea(-50, -50, ScreenWidth() + 100, ScreenHeight() + 100, 0x00FFFFFF);
  FillArea(10, 20, 30, 40, 0x00808080);
  FillArea(ScreenWidth() - 5, ScreenHeight() - 5, 100, 100, 0x00000000);
  FillArea(100, 100, -20, 30, 0x00000000);
  const SmartBitmap splash("splash_screen", true);
  DrawBitmap(-splash.width() / 2, ScreenHeight() - splash.height() / 2, splash.get());
  DrawBitmap(ScreenWidth() + 10, 0, splash.get());
  PartialUpdate(0, 0, ScreenWidth(), ScreenHeight());

  const QImage shown = panel();
  ASSERT_FALSE(shown.isNull());
  EXPECT_EQ(qGray(shown.pixel(10, 20)), 128);
  EXPECT_EQ(qGray(shown.pixel(39, 59)), 128);
  EXPECT_EQ(qGray(shown.pixel(40, 60)), 255);
  EXPECT_EQ(qGray(shown.pixel(ScreenWidth() - 1, ScreenHeight() - 1)), 0);
  EXPECT_EQ(qGray(shown.pixel(90, 110)), 255) << "a negative width fills nothing";
  // The inverted splash's top right corner, the only corner left on the panel.
  EXPECT_EQ(qGray(shown.pixel(splash.width() / 2 - 1, ScreenHeight() - splash.height() / 2)), 0);
  EXPECT_EQ(qGray(shown.pixel(splash.width() / 2, ScreenHeight() - splash.height() / 2)), 255);
  EXPECT_EQ(journalLines("PartialUpdate"), 1);
}

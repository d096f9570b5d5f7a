// Buttons, indicators, decorations and the module's singletons, as the panel shows them.
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "control_scene.h"
#include "device_path.h"
#include "event_wait.h"
#include "panelkit.h"

using lumenpress::testing::areaOf;
using lumenpress::testing::ControlScene;
using lumenpress::testing::darkPixels;
using lumenpress::testing::waitUntil;

namespace {

TEST(Buttons, EveryKindAnswersATapAndNoneWhenDisabled) {
  ControlScene scene(R"(
    property int taps: 0
    Column {
      TextButton { objectName: "text"; text: "Text"; onClicked: scene.taps += 1 }
      RoundTextButton { objectName: "round"; text: "R"; onClicked: scene.taps += 10 }
      RoundedTextButton { objectName: "rounded"; text: "Rounded"; onClicked: scene.taps += 100 }
      RoundedCornerTextButton { objectName: "corner"; text: "Corner"; onClicked: scene.taps += 1000 }
      BitmapButton { objectName: "bitmap"; glyph: "X"; onClicked: scene.taps += 10000 }
      BitmapTextButton { objectName: "bitmapText"; glyph: "+"; text: "Add"; onClicked: scene.taps += 100000 }
      TextButton { objectName: "disabled"; text: "Off"; enabled: false; onClicked: scene.taps += 1000000 }
      RoundButtonBusyIndicator { objectName: "busy"; text: "Pay"; busy: true; onClicked: scene.taps += 10000000 }
    })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  for (const char *name : {"text", "round", "rounded", "corner", "bitmap", "bitmapText", "disabled", "busy"}) {
    scene.tap(scene.item(name));
  }
  EXPECT_EQ(scene.root()->property("taps").toInt(), 111111);
}

TEST(Buttons, APressedButtonTurnsBlackWithoutAnimation) {
  ControlScene scene(R"(TextButton { objectName: "button"; x: 100; y: 100; width: 300; text: "Buy" })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QQuickItem *button = scene.item("button");
  const QRect area = areaOf(button).adjusted(4, 4, -4, -4);
  const int idle = darkPixels(scene.grab(), area);
  EXPECT_GT(idle, 20) << "the label";
  EXPECT_LT(idle, area.width() * area.height() / 4);
  QTest::mousePress(scene.window(), Qt::LeftButton, Qt::NoModifier, area.center());
  EXPECT_GT(darkPixels(scene.grab(), area), area.width() * area.height() * 3 / 4);
  QTest::mouseRelease(scene.window(), Qt::LeftButton, Qt::NoModifier, area.center());
  EXPECT_EQ(darkPixels(scene.grab(), area), idle);
}

TEST(Marks, BusyIndicatorShowsWorkUnderWayOnlyWhileRunning) {
  ControlScene scene(R"(
    BusyIndicator { objectName: "busy"; x: 300; y: 300; width: 150; height: 200 })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QQuickItem *busy = scene.item("busy");
  EXPECT_GT(darkPixels(scene.grab(), areaOf(busy)), 200);
  EXPECT_EQ(scene.item("busyLabel")->property("text").toString(), "Loading…");
  busy->setProperty("running", false);
  EXPECT_EQ(darkPixels(scene.grab(), areaOf(busy)), 0);
}

TEST(Marks, SeparatorsAndBordersDrawWhereTheySay) {
  ControlScene scene(R"(
    DottedSeparator { objectName: "dots"; x: 10; y: 10; width: 400 }
    AdvancedRectangle { objectName: "box"; x: 10; y: 100; width: 200; height: 100; leftBorder: 6; bottomBorder: 3 })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  const QImage shown = scene.grab();
  const QRect dots = areaOf(scene.item("dots"));
  int runs = 0;
  for (int x = dots.left() + 1; x <= dots.right(); ++x) {
    runs += (qGray(shown.pixel(x, dots.top())) < 128) != (qGray(shown.pixel(x - 1, dots.top())) < 128);
  }
  EXPECT_GT(runs, 40) << "dark and light alternate along the line";
  EXPECT_LT(qGray(shown.pixel(12, 150)), 128) << "left border";
  EXPECT_LT(qGray(shown.pixel(110, 198)), 128) << "bottom border";
  EXPECT_EQ(qGray(shown.pixel(110, 102)), 255) << "no top border";
  EXPECT_EQ(qGray(shown.pixel(208, 150)), 255) << "no right border";
}

TEST(Marks, HeadersShowTheirStepsAndLinks) {
  ControlScene scene(R"(
    Column {
      width: 758
      AppHeader { objectName: "app"; width: 758; title: "Store"; backVisible: true }
      SectionHeader { objectName: "section"; width: 758; text: "Popular"; linkText: "All" }
      WizardHeader { objectName: "wizard"; width: 758; title: "Account"; step: 1; stepCount: 4 }
      WizardFooter { objectName: "footer"; width: 758; skipVisible: false }
    })");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QSignalSpy back(scene.item("app"), SIGNAL(backClicked()));
  scene.tap(scene.item("headerBack"));
  EXPECT_EQ(back.count(), 1);
  QSignalSpy link(scene.item("section"), SIGNAL(linkClicked()));
  scene.tap(scene.item("sectionLink"));
  EXPECT_EQ(link.count(), 1);
  QSignalSpy next(scene.item("footer"), SIGNAL(next()));
  scene.tap(scene.item("wizardNext"));
  EXPECT_EQ(next.count(), 1);
  EXPECT_FALSE(scene.item("wizardSkip")->isVisible());

  // Two of four steps are done: two filled dots, two open ones.
  const QImage shown = scene.grab();
  const QRect steps = areaOf(scene.item("wizardSteps"));
  int filled = 0;
  for (QQuickItem *dot : scene.item("wizardSteps")->childItems()) {
    const QRect area = areaOf(dot);
    if (area.isEmpty()) continue;
    filled += qGray(shown.pixel(area.center())) < 128;
  }
  EXPECT_EQ(filled, 2) << steps.width();
}

TEST(Marks, ImageTriesAgainUntilItsPictureArrives) {
  const std::string path = lumenpress::platform::MapDevicePath("/tmp/late.png");
  ControlScene scene(QStringLiteral(R"(
    AutoReloadImage { objectName: "image"; retryInterval: 200; source: "file://%1" })")
                         .arg(QString::fromStdString(path)));
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  QQuickItem *image = scene.item("image");
  ASSERT_TRUE(waitUntil([&] { return image->property("status").toInt() == 3; }));  // Image.Error
  QImage picture(20, 30, QImage::Format_RGB32);
  picture.fill(Qt::black);
  ASSERT_TRUE(picture.save(QString::fromStdString(path)));
  EXPECT_TRUE(waitUntil([&] { return image->property("status").toInt() == 1; }));  // Image.Ready
  EXPECT_GE(image->property("attempts").toInt(), 1);
}

TEST(Singletons, DescribeThisDevicesPanelAndTranslateKeys) {
  lpconfig *config = OpenConfig("/coreapp/config/device.cfg", 1);
  WriteInt(config, "touchpanel", 0);
  WriteInt(config, "dpi", 320);
  ASSERT_EQ(CloseConfig(config), 0);
  ControlScene scene(R"(
    readonly property int width_: DeviceInfoProvider.screenWidth
    readonly property int height_: DeviceInfoProvider.screenHeight
    readonly property bool touch: DeviceInfoProvider.isTouchDevice
    readonly property real dp: Global.dp
    readonly property string ok: qsTr("@OK")
    readonly property string missing: qsTr("@NoSuchKey"))");
  ASSERT_TRUE(scene.ready()) << scene.errors().toStdString();
  EXPECT_EQ(scene.root()->property("width_").toInt(), 758);
  EXPECT_EQ(scene.root()->property("height_").toInt(), 1024);
  EXPECT_FALSE(scene.root()->property("touch").toBool());
  EXPECT_DOUBLE_EQ(scene.root()->property("dp").toDouble(), 2.0);
  EXPECT_EQ(scene.root()->property("ok").toString(), "OK");
  EXPECT_EQ(scene.root()->property("missing").toString(), "NoSuchKey");
}

}  // namespace

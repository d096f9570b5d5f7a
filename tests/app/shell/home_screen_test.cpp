// The program from its store manager to the painted home page, against a devstore of its own.
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QTest>
#include <QUrl>

#include <algorithm>
#include <fstream>
#include <set>

#include "device_path.h"
#include "event_wait.h"
#include "message_handler.h"
#include "panelkit.h"
#include "store_window.h"

using lumenpress::testing::DevstoreProcess;
using lumenpress::testing::StoreWindow;
using lumenpress::testing::tap;
using lumenpress::testing::waitUntil;

namespace {

// The mean colour of the middle of a picture, where a cover shows its own colour.
QColor middleColour(const QImage &image, const QRect &area) {
  const QRect middle(area.center() - QPoint(area.width() / 4, area.height() / 8),
                     QSize(area.width() / 2, area.height() / 4));
  long red = 0, green = 0, blue = 0, count = 0;
  for (int y = middle.top(); y <= middle.bottom(); ++y) {
    for (int x = middle.left(); x <= middle.right(); ++x) {
      const QRgb pixel = image.pixel(x, y);
      red += qRed(pixel);
      green += qGreen(pixel);
      blue += qBlue(pixel);
      ++count;
    }
  }
  return count ? QColor(red / count, green / count, blue / count) : QColor();
}

std::string logText() {
  std::ifstream in(std::string(std::getenv("LUMENPRESS_DEVICE_ROOT")) + "/host/kiosk-2.log");
  return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(HomeScreen, ShowsTheStoresRowsWithTheirBooks) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  StoreWindow program(store);
  ASSERT_TRUE(program.started());
  QQuickWindow *window = program.window();
  ASSERT_TRUE(waitUntil([&] {
    const QStringList books = program.texts("bookTitle");
    return program.texts("rowTitle").size() >= 2 && books.size() >= 8 && !books.contains("");
  })) << program.texts("rowTitle").join("|").toStdString()
      << " / " << program.texts("bookTitle").join("|").toStdString();
  const QStringList rows = program.texts("rowTitle");
  EXPECT_EQ(rows.value(0), "Buch der Woche");
  EXPECT_EQ(rows.value(1), "Beliebt");
  for (const QString &price : program.texts("bookPrice")) {
    EXPECT_TRUE(price.endsWith(QStringLiteral(" €")) || price == "Kostenlos" || price == "Free") << price.toStdString();
  }

  // What the owner sees: a white page with dark text and covers on it.
  const QImage shown = window->screen()->grabWindow(window->winId()).toImage();
  ASSERT_FALSE(shown.isNull());
  int dark = 0;
  for (int y = 0; y < shown.height(); y += 4) {
    for (int x = 0; x < shown.width(); x += 4) dark += qGray(shown.pixel(x, y)) < 100;
  }
  EXPECT_GT(dark, 200);
  EXPECT_EQ(qGray(shown.pixel(shown.width() - 2, 2)), 255);

  // Each cover shows its own picture through the cover provider, in grey on this grey panel:
  // the middle of what the window shows has the grey of the middle of the picture the store
  // serves at the cover's address.
  ASSERT_TRUE(waitUntil([&] {
    const auto covers = program.shown("cover");
    return covers.size() >= 8 &&
           std::all_of(covers.begin(), covers.end(), [](QQuickItem *c) { return c->property("status").toInt() == 1; });
  }));
  // A frame drawn after the last cover arrived.
  bool swapped = false;
  QObject::connect(window, &QQuickWindow::frameSwapped, [&swapped] { swapped = true; });
  window->update();
  ASSERT_TRUE(waitUntil([&swapped] { return swapped; }));
  const QImage painted = window->screen()->grabWindow(window->winId()).toImage();
  int compared = 0;
  const QString provider = QStringLiteral("image://url_image/");
  for (QQuickItem *cover : program.shown("cover")) {
    const QRect area = cover->mapRectToScene(QRectF(0, 0, cover->width(), cover->height())).toRect();
    if (!painted.rect().contains(area)) continue;
    const QString source = cover->property("source").toString();
    ASSERT_TRUE(source.startsWith(provider)) << source.toStdString();
    const QUrl address(source.mid(provider.size()));
    const QImage served = QImage::fromData(QByteArray::fromStdString(
        store.get(address.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::FullyEncoded).toStdString())
            .body));
    ASSERT_FALSE(served.isNull()) << source.toStdString();
    const int onScreen = qGray(middleColour(painted, area).rgb());
    const int expected = qGray(middleColour(served, served.rect()).rgb());
    EXPECT_LT(std::abs(onScreen - expected), 16)
        << source.toStdString() << " shows " << onScreen << ", served " << expected;
    ++compared;
  }
  EXPECT_GE(compared, 5) << "the book of the week and a row of four";

  // The splash was on the panel before the screens were.
  const QImage splash(QString::fromStdString(lumenpress::platform::DeviceRoot() + "/host/panel.png"));
  ASSERT_FALSE(splash.isNull());
  EXPECT_EQ(qGray(splash.pixel(0, 0)), 255);
  EXPECT_LT(qGray(splash.pixel(splash.width() / 2, static_cast<int>(splash.height() * 0.372) + 130)), 128)
      << "the book of the splash";

  // Scrolled to its end, the page asks for the next page of rows and shows them.
  QQuickItem *homeRows = program.item("homeRows");
  ASSERT_NE(homeRows, nullptr);
  const int firstPage = homeRows->property("count").toInt();
  QMetaObject::invokeMethod(homeRows, "positionViewAtEnd");
  ASSERT_TRUE(waitUntil([&] { return homeRows->property("count").toInt() > firstPage; }));
  QMetaObject::invokeMethod(homeRows, "positionViewAtEnd");
  ASSERT_TRUE(waitUntil([&] { return program.texts("rowTitle").contains("Fantasy"); }))
      << program.texts("rowTitle").join("|").toStdString();

  std::set<std::string> targets;
  for (const auto &request : store.requests()) targets.insert(request["target"].asString());
  EXPECT_EQ(targets.count("/de_de/lpress/opds/home"), 1u);
  EXPECT_EQ(targets.count("/de_de/lpress/opds/home?page=2"), 1u);
}

// The store answers its first home request by dropping the connection: the page says so instead
// of staying blank, and trying again brings the rows.
TEST(HomeScreen, AStoreThatDoesNotAnswerIsSaidSoWithAWayToTryAgain) {
  DevstoreProcess store;
  ASSERT_TRUE(store.running());
  Json::Value fault;
  fault["path"] = "/de_de/lpress/opds/home";
  fault["drop"] = true;
  ASSERT_TRUE(store.addFault(fault));
  StoreWindow program(store);
  ASSERT_TRUE(program.started());
  ASSERT_TRUE(waitUntil([&] { return program.texts("emptyTitle").value(0) != ""; }));
  EXPECT_EQ(program.texts("emptyTitle").value(0), "The store cannot be reached");
  EXPECT_TRUE(program.texts("rowTitle").isEmpty());

  ASSERT_NE(program.item("emptyRetry"), nullptr);
  tap(program.item("emptyRetry"));
  EXPECT_TRUE(waitUntil([&] { return program.texts("rowTitle").size() >= 2; }));
  EXPECT_TRUE(program.texts("emptyTitle").isEmpty());
}

TEST(MessageHandler, QtLevelsMapOntoTheDevicesLevels) {
  const QMessageLogContext context;
  customMessageHandler(QtDebugMsg, context, "debug line");
  customMessageHandler(QtWarningMsg, context, "warning line");
  customMessageHandler(QtCriticalMsg, context, "critical line");
  customMessageHandler(QtFatalMsg, context, "fatal line");
  customMessageHandler(QtInfoMsg, context, QStringLiteral("info line ü"));
  const std::string log = logText();
  for (const auto &[level, text] : std::vector<std::pair<std::string, std::string>>{{"<3>", "debug line"},
                                                                                    {"<2>", "warning line"},
                                                                                    {"<1>", "critical line"},
                                                                                    {"<1>", "fatal line"},
                                                                                    {"<3>", "info line"}}) {
    const auto line = log.find(text);
    ASSERT_NE(line, std::string::npos) << text;
    const std::string whole = log.substr(log.rfind('\n', line) + 1, log.find('\n', line) - log.rfind('\n', line));
    EXPECT_NE(whole.find(" " + level + " ../../app/src/main.cpp"), std::string::npos) << whole;
    EXPECT_NE(whole.find("customMessageHandler"), std::string::npos) << whole;
    EXPECT_NE(whole.find("[pid:" + std::to_string(g_process_pid) + "]" + text), std::string::npos) << whole;
  }
}

}  // namespace

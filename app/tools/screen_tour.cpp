// screen_tour: starts the store offscreen against a storefront, shows each view that exists and
// writes a PNG of it, named after the view, into one folder.
// Usage: screen_tour --store URL --out DIR [--prefix TEXT] [--views name,name,...]
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include "message_meneger.h"
#include "panelkit.h"
#include "store_manager.h"
#include "user_data.h"

namespace {

struct View {
  const char *name;
  // Brings the view on the window.
  std::function<void(QQuickWindow *)> show;
};

QQuickItem *findItem(QQuickItem *item, const QString &name) {
  if (item->objectName() == name) return item;
  for (QQuickItem *child : item->childItems()) {
    if (QQuickItem *found = findItem(child, name)) return found;
  }
  return nullptr;
}

void collect(QQuickItem *item, std::vector<QQuickItem *> *images) {
  if (item->inherits("QQuickImage") && item->isVisible()) images->push_back(item);
  for (QQuickItem *child : item->childItems()) collect(child, images);
}

// Nothing is loading: no model, no picture, and the last frame has been drawn.
bool settled(QQuickWindow *window) {
  const QVariant model = qmlContext(window)->contextProperty(QStringLiteral("RootListModel"));
  if (auto *root = model.value<QObject *>(); root && root->property("isListLoading").toBool()) return false;
  std::vector<QQuickItem *> images;
  collect(window->contentItem(), &images);
  for (QQuickItem *image : images) {
    if (image->property("status").toInt() == 2) return false;  // Image.Loading
  }
  return true;
}

void waitUntilSettled(QQuickWindow *window) {
  QElapsedTimer clock;
  clock.start();
  QElapsedTimer quiet;
  quiet.start();
  const auto frames = QObject::connect(window, &QQuickWindow::frameSwapped, [&quiet] { quiet.restart(); });
  // The first rows of a feed arrive in steps; a view counts as shown once nothing has changed
  // for a moment, or after 20 seconds at most.
  while (clock.elapsed() < 20000 && !(settled(window) && quiet.elapsed() > 700)) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  }
  QObject::disconnect(frames);
}

bool writeView(QQuickWindow *window, const QString &file) {
  window->update();
  waitUntilSettled(window);
  const bool written = window->screen()->grabWindow(window->winId()).save(file, "PNG");
  std::printf("%s %s\n", written ? "wrote" : "could not write", qPrintable(file));
  return written;
}

QObject *published(QQuickWindow *window, const char *name) {
  return qmlContext(window)->contextProperty(QString::fromLatin1(name)).value<QObject *>();
}

// A step of the sign-in flow, by its loader's name and its file.
std::function<void(QQuickWindow *)> loginStep(const char *loader, const char *file) {
  return [loader, file](QQuickWindow *window) {
    QMetaObject::invokeMethod(window, "openLoginView");
    QQuickItem *flow = findItem(window->contentItem(), QStringLiteral("login_view"));
    QQuickItem *step = findItem(window->contentItem(), QString::fromLatin1(loader));
    if (!flow || !step) return;
    QObject *main = flow->property("item").value<QObject *>();
    main->setProperty("email", QStringLiteral("new.reader@example.com"));
    QMetaObject::invokeMethod(main, "show", Q_ARG(QVariant, QVariant::fromValue<QObject *>(step)),
                              Q_ARG(QVariant, QString::fromLatin1(file)));
  };
}

void openUserMenu(QQuickWindow *window) {
  QMetaObject::invokeMethod(window, "closeLoginView");
  QMetaObject::invokeMethod(window, "openCustomPopUp");
}

// The menu with its list of stores open.
void openStoreList(QQuickWindow *window) {
  openUserMenu(window);
  QQuickItem *menu = findItem(window->contentItem(), QStringLiteral("context_menu"));
  if (QObject *popup = menu ? menu->property("item").value<QObject *>() : nullptr)
    QMetaObject::invokeMethod(popup, "choose", Q_ARG(QVariant, 4));
}

// Signs the seeded customer in and waits for the session to stand.
void signIn(QQuickWindow *window) {
  auto *user = qobject_cast<UserData *>(published(window, "UserData"));
  if (!user || user->isLoggedIn()) return;
  bool done = false;
  const auto finished = QObject::connect(user, &UserData::loginFinished, [&done](bool) { done = true; });
  user->login(QStringLiteral("reader@example.com"), QStringLiteral("reader"));
  QElapsedTimer clock;
  clock.start();
  while (!done && clock.elapsed() < 20000) QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  QObject::disconnect(finished);
  openUserMenu(window);
}

// The download bar of an earlier view would cover the foot of the later ones.
void dismissDownloadBar(QQuickWindow *window) {
  if (QQuickItem *bar = findItem(window->contentItem(), QStringLiteral("book_downloaded_dg"))) bar->setVisible(false);
}

// The popular books of the store, shown as the user's layout has it.
std::function<void(QQuickWindow *)> bookList(const QUrl &store, bool grid) {
  const QString url = store.resolved(QUrl(QStringLiteral("lpress/opds/list?name=popular"))).toString();
  return [url, grid](QQuickWindow *window) {
    dismissDownloadBar(window);
    QMetaObject::invokeMethod(window, "navigateAcquisitionList", Q_ARG(QVariant, url));
    QMetaObject::invokeMethod(window, "switchToGrid", Q_ARG(QVariant, grid));
  };
}

void openFirstBook(QQuickWindow *window) {
  QObject *books = published(window, "AcquisitionListModel");
  QMetaObject::invokeMethod(window, "navigateDetailFromElementList",
                            Q_ARG(QVariant, QVariant::fromValue<QObject *>(books)), Q_ARG(QVariant, 0));
}

// The search with the store's suggestions for a few letters.
void searchWithSuggestions(QQuickWindow *window) {
  QMetaObject::invokeMethod(window, "openSearchView");
  if (QQuickItem *field = findItem(window->contentItem(), QStringLiteral("searchField")))
    field->setProperty("text", QStringLiteral("sil"));
}

void searchResults(QQuickWindow *window) {
  QMetaObject::invokeMethod(window, "openSearchResults", Q_ARG(QVariant, QStringLiteral("silent archive")));
}

void goBack(QQuickWindow *window) {
  QMetaObject::invokeMethod(window, "navigateBack");
}

// The local storefront keeps covers at /covers/<book>.jpg.
std::vector<View> views(const QUrl &store) {
  const std::string cover = store.resolved(QUrl(QStringLiteral("/covers/181.jpg"))).toString().toStdString();
  return {
      {"home", [](QQuickWindow *) {}},
      {"home-next-page",
       [](QQuickWindow *window) {
         if (QQuickItem *rows = findItem(window->contentItem(), QStringLiteral("homeRows")))
           QMetaObject::invokeMethod(rows, "pageForward");
       }},
      {"book_downloaded_dg",
       [cover](QQuickWindow *window) {
         const QVariant messenger = qmlContext(window)->contextProperty(QStringLiteral("DownloadingMessenger"));
         if (auto *queue = qobject_cast<MessageMeneger *>(messenger.value<QObject *>()))
           queue->addDownloadMessage("181", "Archive of Venice", cover, "ebook");
       }},
      {"acquisition-list", bookList(store, false)},
      {"acquisition-grid", bookList(store, true)},
      {"book-detail", openFirstBook},
      {"book-detail-back", goBack},
      {"category-tree",
       [](QQuickWindow *window) {
         QMetaObject::invokeMethod(window, "openCategoryTree");
         QObject *tree = published(window, "CategoryTreeListModel");
         QMetaObject::invokeMethod(tree, "openSublist", Q_ARG(int, 1));
       }},
      {"popular-genres", [](QQuickWindow *window) { QMetaObject::invokeMethod(window, "openPopularGenres"); }},
      {"search", searchWithSuggestions},
      {"search-results", searchResults},
      {"user-menu",
       [](QQuickWindow *window) {
         if (QQuickItem *bar = findItem(window->contentItem(), QStringLiteral("book_downloaded_dg")))
           bar->setVisible(false);
         openUserMenu(window);
       }},
      {"user-menu-stores", openStoreList},
      {"login-start", loginStep("login_start", "LoginStartView.qml")},
      {"login-email", loginStep("enter_email_view", "EnterEmailView.qml")},
      {"login-password", loginStep("enter_password_view", "EnterPasswordView.qml")},
      {"login-recover-password", loginStep("recover_password_view", "RecoverPasswordView.qml")},
      {"login-new-user", loginStep("new_user_view", "NewUserView.qml")},
      {"login-set-password", loginStep("set_password_view", "SetPasswordView.qml")},
      {"login-no-touch", loginStep("login_no_touch", "AccountAuthNoTouch.qml")},
      {"login-welcome", loginStep("welcome_view", "WelcomeView.qml")},
      {"user-menu-signed-in", signIn},
      {"auto-logout",
       [](QQuickWindow *window) {
         QMetaObject::invokeMethod(window, "closeLoginView");
         QMetaObject::invokeMethod(window, "askAutoLogout", Q_ARG(QVariant, 1));
       }},
  };
}

}  // namespace

int main(int argc, char **argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("QT_QUICK_BACKEND", "software", 0);
  QGuiApplication app(argc, argv);
  QCommandLineParser options;
  options.addOptions({{"store", "The store's URL, ending in its locale and a slash.", "url"},
                      {"out", "The folder the pictures are written to.", "dir"},
                      {"prefix", "Put before each file name.", "text"},
                      {"views", "Only these views, separated by commas.", "names"}});
  options.process(app);
  if (!options.isSet("store") || !options.isSet("out")) {
    std::fprintf(stderr, "usage: screen_tour --store URL --out DIR [--prefix TEXT] [--views a,b]\n");
    return 2;
  }
  lpconfig *config = OpenConfig("/mnt/ext1/system/config/bookstore.cfg", 1);
  WriteString(config, "default_store", qPrintable(options.value("store")));
  CloseConfig(config);
  QDir().mkpath(options.value("out"));

  StoreManager manager;
  if (manager.Init(argc, argv) != 0) return 1;
  auto *window = qobject_cast<QQuickWindow *>(QGuiApplication::topLevelWindows().value(0));
  if (!window) return 1;
  const QStringList wanted = options.value("views").split(',', Qt::SkipEmptyParts);
  int failed = 0;
  for (const View &view : views(QUrl(options.value("store")))) {
    if (!wanted.isEmpty() && !wanted.contains(view.name)) continue;
    view.show(window);
    const QString file = QDir(options.value("out")).filePath(options.value("prefix") + view.name + ".png");
    failed += writeView(window, file) ? 0 : 1;
  }
  return failed == 0 ? 0 : 1;
}

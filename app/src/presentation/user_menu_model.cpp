#include "user_menu_model.h"

#include <QDebug>

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "cfg_wrapper.h"
#include "panelkit.h"
#include "user_data.h"

using lumenpress::utilities::CfgWrapper;

namespace {

constexpr char kBookstoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";
constexpr int kLeft = 0;
constexpr int kRight = 4;
constexpr int kMixedCase = 0;
constexpr int kCapitalized = 4;

QString text(const char *key) {
  return QString::fromUtf8(GetLangText(key));
}

}  // namespace

UserMenuModel::UserMenuModel(QObject *parent) : QAbstractListModel(parent) {
  purchased_title_ = text("@MyPurchases");
  wishlist_title_ = text("@WishLis");
  colors_ = {{QColor("#000000"), QColor("#FFFFFF")},
             {QColor("#515151"), QColor("#FFFFFF")},
             {QColor("#c3c4c3"), QColor("#000000")}};
  icon_color_ = colors_[0].first;
  text_color_ = colors_[0].second;
  UserData *user = UserData::instance();
  connect(user, &UserData::loginFinished, this, &UserMenuModel::handleLoginFinished);
  connect(user, &UserData::userInfoLoaded, this, &UserMenuModel::handleUserInfoLoaded);
  buildRows();
  if (user->isLoggedIn()) chooseColor();
}

int UserMenuModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : rows_.size();
}

QVariant UserMenuModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rows_.size()) return QVariant();
  const Row &row = rows_[index.row()];
  switch (role) {
    case UidRole:
      return row.id;
    case KindRole:
      return row.kind;
    case TextRole:
      return row.text;
    case UrlRole:
      return row.url;
    case DisabledRole:
      return row.disabled;
    case AlignmentRole:
      return row.alignment;
    case CapitalizationRole:
      return row.capitalization;
    case ActiveRole:
      return false;
    default:
      return QVariant();
  }
}

QHash<int, QByteArray> UserMenuModel::roleNames() const {
  return {{UidRole, "uid"},
          {KindRole, "el_kind"},
          {TextRole, "text_"},
          {UrlRole, "element_url"},
          {DisabledRole, "is_disabled"},
          {AlignmentRole, "text_align"},
          {CapitalizationRole, "capitalization"},
          {ActiveRole, "is_active"}};
}

void UserMenuModel::buildRows() {
  rows_.clear();
  const auto url1 = QStringLiteral("url1");
  const Row stores{STORELIST, "expand", text("@ChooseStore"), url1, stores_missing_, kLeft, kMixedCase};
  if (!UserData::instance()->isLoggedIn()) {
    rows_ = {stores, {LOGIN, "normal", text("@LogIn"), url1, false, kLeft, kCapitalized}};
    return;
  }
  rows_ = {{TITLE, "title", UserData::instance()->getUserEmail(), url1, false, kLeft, kCapitalized},
           {PURCHASED, "normal", purchased_title_, url1, false, kLeft, kCapitalized},
           {WISHLIST, "normal", wishlist_title_, url1, false, kLeft, kCapitalized},
           stores,
           {LANGUAGE, "expand", text("@BookLanguage"), "url", languages_missing_, kLeft, kMixedCase},
           {SETTINGS, "normal", text("@Settings"), "url2", false, kLeft, kCapitalized},
           {LOGOUT, "normal", text("@LogOut"), url1, false, kRight, kCapitalized}};
}

// Each user gets one colour at the first sign-in and keeps it until signing out.
void UserMenuModel::chooseColor() {
  CfgWrapper config(kBookstoreConfig, 1);
  const std::vector<std::string> keys = config.getKeys();
  if (std::find(keys.begin(), keys.end(), "user_color") != keys.end()) {
    color_index_ = config.read<int>("user_color", 0);
  } else {
    std::srand(static_cast<unsigned>(std::time(nullptr)));
    color_index_ = std::rand() % colors_.size();
    config.write<int>("user_color", color_index_);
    config.save();
  }
  if (color_index_ < 0 || color_index_ >= colors_.size()) color_index_ = 0;
  icon_color_ = colors_[color_index_].first;
  text_color_ = colors_[color_index_].second;
  emit iconColorChanged();
  emit updateSavedIcon();
}

void UserMenuModel::handleLoginFinished(bool success) {
  qDebug() << "=== handleLoginFinished " << (success ? "true" : "false") << UserData::instance()->getUserEmail();
  if (!success) {
    CfgWrapper config(kBookstoreConfig, 1);
    config.remove("user_color");
    config.save();
  } else {
    chooseColor();
  }
  beginResetModel();
  buildRows();
  endResetModel();
}

void UserMenuModel::handleUserInfoLoaded() {
  beginResetModel();
  buildRows();
  endResetModel();
}

void UserMenuModel::handleStoreLoaded(bool is_loaded) {
  stores_missing_ = !is_loaded;
  buildRows();
  announceAllRows();
}

void UserMenuModel::handleLanguageLoaded(bool is_loaded) {
  languages_missing_ = !is_loaded;
  buildRows();
  announceAllRows();
}

void UserMenuModel::announceAllRows() {
  if (!rows_.isEmpty()) emit dataChanged(index(0), index(rows_.size() - 1));
}

void UserMenuModel::handlePurchasedBookCountChanged(int num) {
  purchased_title_ = num < 1 ? text("@MyPurchases") : QStringLiteral("%1 (%2)").arg(text("@MyPurchases")).arg(num);
  setCountedTitle(PURCHASED, purchased_title_);
}

void UserMenuModel::handleWishlistLoaded(int num) {
  wishlist_title_ = num < 1 ? text("@WishLis") : QStringLiteral("%1 (%2)").arg(text("@WishLis")).arg(num);
  setCountedTitle(WISHLIST, wishlist_title_);
}

void UserMenuModel::setCountedTitle(MenuElementType id, const QString &title) {
  for (int i = 0; i < rows_.size(); ++i) {
    if (rows_[i].id != id) continue;
    rows_[i].text = title;
    emit dataChanged(index(i), index(i), {TextRole});
  }
}

QString UserMenuModel::getTitleById(int num) {
  for (const Row &row : rows_) {
    if (row.id == num) return row.text;
  }
  return QString();
}

QString UserMenuModel::getIconLocation() {
  if (!UserData::instance()->isLoggedIn()) return QStringLiteral("qrc:/qml/images/user_guest.svg");
  return QStringLiteral("qrc:/qml/images/user_%1.svg").arg(color_index_);
}

#include "stores_model.h"

#include "legal_checker.h"
#include "legal_helper.h"
#include "panelkit.h"
#include "url.h"
#include "user_data.h"

StoresModel::StoresModel(QObject *parent) : QAbstractListModel(parent), current_url_(LP_DEFAULT_STORE_URL) {}

int StoresModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(stores_.size());
}

QVariant StoresModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || !inRange(index.row())) return QVariant();
  const BookstoreApi::StoreInfo &store = stores_[static_cast<size_t>(index.row())];
  switch (role) {
    case TextRole:
      return QString::fromStdString(store.language);
    case UrlRole:
      return QString::fromStdString(store.url);
    case ActiveRole:
      return index.row() == current_index_;
    default:
      return QVariant();
  }
}

QHash<int, QByteArray> StoresModel::roleNames() const {
  return {{TextRole, "text_"}, {UrlRole, "url"}, {ActiveRole, "is_active"}};
}

void StoresModel::setCurrentUrl(std::string url) {
  if (url.empty()) {
    current_url_ = fallback_url_;
    using_fallback_ = true;
  } else {
    current_url_ = std::move(url);
  }
}

std::string StoresModel::firstStoreUrl() const {
  return stores_.empty() ? std::string() : stores_.front().url;
}

int StoresModel::isDisabled() const {
  return inRange(current_index_) && stores_[static_cast<size_t>(current_index_)].disabled ? 1 : 0;
}

QString StoresModel::currentLangCode() const {
  return inRange(current_index_) ? QString::fromStdString(stores_[static_cast<size_t>(current_index_)].langCode)
                                 : QString();
}

QString StoresModel::currentStoreAcr() const {
  return currentLangCode().toUpper();
}

// A failed request gives an empty list: the store in use stays, and nothing is announced but
// that no list came.
void StoresModel::setStores(std::vector<BookstoreApi::StoreInfo> stores) {
  beginResetModel();
  stores_ = std::move(stores);
  const bool moved = !stores_.empty() && !findCurrentRow();
  endResetModel();
  if (moved) emit storesChanged(QString::fromStdString(current_url_));
  if (!stores_.empty()) emit storeLangCodeChanged(currentLangCode());
  emit storesLoaded(!stores_.empty());
  emit currentIndexChanged();
  emit currentStoreAcrChanged();
}

// False when the store in use had to give way to the first row.
bool StoresModel::findCurrentRow() {
  for (size_t i = 0; i < stores_.size(); ++i) {
    if (stores_[i].url != current_url_) continue;
    current_index_ = static_cast<int>(i);
    if (!using_fallback_) return true;
    break;
  }
  current_index_ = 0;
  current_url_ = stores_.front().url;
  using_fallback_ = false;
  return false;
}

QString StoresModel::getElementText(int index) {
  if (index >= static_cast<int>(stores_.size())) return QString();
  return QString::fromStdString(stores_[static_cast<size_t>(index)].language);
}

bool StoresModel::isNeedAutoLogout(int index) {
  if (index == current_index_ || !inRange(index)) return false;
  const lumenpress::utilities::Url chosen(stores_[static_cast<size_t>(index)].url);
  const lumenpress::utilities::Url current(current_url_);
  return chosen.host() != current.host();
}

bool StoresModel::isLegalAccepted(int index, QString email) {
  if (index == current_index_ || !inRange(index)) return true;
  constexpr int kNetworkMask = 0xf00;
  if (!(QueryNetwork() & kNetworkMask)) NetConnect(nullptr);
  if (QueryNetwork() & kNetworkMask) lumenpress::legal::LegalHelper::runConsentRefresh();
  const std::vector<LegalChecker::ServiceType> services = {LegalChecker::kBookstore, LegalChecker::kCloud};
  if (lumenpress::legal::LegalHelper().isAccepted(services)) return true;
  const std::string lang_code = stores_[static_cast<size_t>(index)].langCode;
  LegalChecker::runLegalUIForServiceAndWait(services, lang_code, email.toStdString(), 0);
  return lumenpress::legal::LegalHelper().isAccepted(services);
}

void StoresModel::setModelToIndex(int index) {
  setModelToIndex(index, true);
}

// Saving is left to the receivers of storesChanged.
void StoresModel::setModelToIndex(int index, bool) {
  if (index == current_index_) return;
  if (inRange(index)) {
    UserData *user = UserData::instance();
    if (user->isLoggedIn() && isNeedAutoLogout(index)) user->logout();
    beginResetModel();
    current_index_ = index;
    user_selected_ = true;
    current_url_ = stores_[static_cast<size_t>(index)].url;
    using_fallback_ = false;
    endResetModel();
  }
  emit currentIndexChanged();
  emit currentStoreAcrChanged();
  emit storesChanged(QString::fromStdString(current_url_));
  emit storeLangCodeChanged(currentLangCode());
}

void StoresModel::updateStoresUrl(std::string item_url) {
  const size_t found = item_url.find("/lpress/");
  if (found == std::string::npos || found == 0) return;
  const std::string prefix = item_url.substr(0, found + 1);
  if (stores_.empty()) {
    current_url_ = prefix;
    emit storesChanged(QString::fromStdString(prefix));
    return;
  }
  if (prefix == current_url_) return;
  bool matched = false;
  for (size_t i = 0; i < stores_.size(); ++i) {
    if (stores_[i].url == prefix) {
      current_index_ = static_cast<int>(i);
      matched = true;
    }
  }
  if (!matched) return;
  current_url_ = prefix;
  emit dataChanged(index(0), index(static_cast<int>(stores_.size()) - 1), {ActiveRole});
  emit storesChanged(QString::fromStdString(prefix));
  emit currentIndexChanged();
}

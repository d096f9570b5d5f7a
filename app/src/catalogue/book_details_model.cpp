#include "book_details_model.h"

#include <QDateTime>
#include <QTextDocumentFragment>

#include <ctime>

#include "language_codes.h"
#include "panelkit.h"

using lumenpress::opds::OPDS::Entry;

namespace {

QString text(const char *key) {
  return QString::fromUtf8(GetLangText(key));
}

}  // namespace

BookDetailsModel::BookDetailsModel(QObject *parent) : QAbstractListModel(parent) {}

int BookDetailsModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : rows_.size();
}

QVariant BookDetailsModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rows_.size()) return QVariant();
  if (role == NameRole) return rows_[index.row()].first;
  if (role == ValueRole) return rows_[index.row()].second;
  return QVariant();
}

QHash<int, QByteArray> BookDetailsModel::roleNames() const {
  return {{NameRole, "name"}, {ValueRole, "value"}};
}

// Every row stands, with an empty value where the feed says nothing.
void BookDetailsModel::SetEntry(std::shared_ptr<Entry> entry) {
  beginResetModel();
  entry_ = std::move(entry);
  rows_.clear();
  if (entry_) {
    rows_ = {
        {text("@DateReleased"), releaseDate(entry_->published)},
        {text("@Language"), QString::fromStdString(lumenpress::utilities::LanguageCodes::FindCode(entry_->language))},
        {text("@Pages"), pages(entry_->extent)},
        {text("@Publisher"),
         QTextDocumentFragment::fromHtml(QString::fromStdString(entry_->publisher.str())).toPlainText()},
        {text("@ISBN"), isbn(entry_->identifier)}};
  }
  endResetModel();
}

QString BookDetailsModel::releaseDate(const std::string &published) {
  std::tm parsed{};
  parsed.tm_year = 70;
  // A date without a time still gives its year: what was read before the format ran out counts.
  strptime(published.c_str(), "%Y-%m-%d %H:%M:%S", &parsed);
  if (parsed.tm_year == 70) return QString();
  const QDate date(parsed.tm_year + 1900, parsed.tm_mon + 1, parsed.tm_mday);
  return QDateTime(date, QTime(0, 0)).toString(QStringLiteral("MMMM dd, yyyy"));
}

// "320 pages" gives "320".
QString BookDetailsModel::pages(const std::string &extent) {
  const size_t blank = extent.find(' ');
  return QString::fromStdString(blank != std::string::npos && blank >= 1 ? extent.substr(0, blank) : extent);
}

QString BookDetailsModel::isbn(const std::string &identifier) {
  const size_t found = identifier.find("ISBN:");
  return found == std::string::npos ? QString() : QString::fromStdString(identifier.substr(found + 5));
}

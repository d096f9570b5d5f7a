#include "search_hint_model.h"

#include <QtConcurrent>

#include "lp_log.h"

SearchHintModel::SearchHintModel(QObject *parent) : QAbstractListModel(parent), api_([] {}) {
  connect(&watcher_, &QFutureWatcherBase::finished, this, &SearchHintModel::handleFinished);
}

int SearchHintModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() || !results_ ? 0 : static_cast<int>(results_->size());
}

QVariant SearchHintModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return QVariant();
  const BookstoreApi::SearchSuggestionInfo &hint = (*results_)[static_cast<size_t>(index.row())];
  switch (role) {
    case TermRole:
      return QString::fromStdString(hint.type);
    case TitleRole:
      return QString::fromStdString(hint.title);
    case AuthorRole:
      return QString::fromStdString(hint.author);
    case CoverUrlRole:
      return QString::fromStdString(hint.image);
    case UrlRole:
      return QString::fromStdString(hint.urlOpds);
    default:
      return QVariant();
  }
}

QHash<int, QByteArray> SearchHintModel::roleNames() const {
  return {
      {TermRole, "term"}, {TitleRole, "title"}, {AuthorRole, "author"}, {CoverUrlRole, "cover_url"}, {UrlRole, "url"}};
}

// Every changed term asks the store; the comparison with the last term is all that holds a
// request back. A request still on its way is not stopped, only no longer watched.
void SearchHintModel::updateSearchStr(QString str) {
  const std::string term = str.toStdString();
  if (term == search_str_) return;
  search_str_ = term;
  LP_LOG(LP_LOG_INFO, "\n\n SEARCH SUGGESTION %s", term.c_str());
  if (term.empty()) {
    beginResetModel();
    results_.reset();
    endResetModel();
    return;
  }
  // The term goes along by value: the main thread may store the next one meanwhile.
  watcher_.setFuture(QtConcurrent::run(QThreadPool::globalInstance(), [this, term] {
    std::string asked = term;
    auto results = std::make_shared<std::vector<BookstoreApi::SearchSuggestionInfo>>();
    api_.getSearchSuggestion(asked, results.get());
    return Result{results, QString::fromStdString(term)};
  }));
  emit isLoadingChanged(true);
}

void SearchHintModel::handleFinished() {
  if (!watcher_.isFinished() || watcher_.isCanceled()) return;
  const Result result = watcher_.result();
  beginResetModel();
  results_ = result.results;
  highlight_str_ = result.term;
  endResetModel();
  emit isLoadingChanged(false);
}

void SearchHintModel::setBaseUrl(std::string base_url) {
  api_.setBaseUrl(base_url);
}

// The same term typed again asks nothing and shows nothing.
void SearchHintModel::resetSuggestion() {
  if (watcher_.isRunning()) watcher_.cancel();
  beginResetModel();
  results_.reset();
  endResetModel();
}

QString SearchHintModel::addHtmpBackgroundColorTag(QString repl_str1) {
  static const QString open = QStringLiteral("<span style=\"background-color: #c3c4c3\">");
  static const QString close = QStringLiteral("</span>");
  // A search from the last character on; Qt finds nothing when asked to start past the end.
  int from = repl_str1.length() - 1;
  while (from >= 0) {
    const int found = repl_str1.lastIndexOf(highlight_str_, from, Qt::CaseInsensitive);
    if (found < 0) break;
    repl_str1.insert(found + highlight_str_.length(), close);
    repl_str1.insert(found, open);
    from = found - 1;
  }
  return repl_str1;
}

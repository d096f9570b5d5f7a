// The synchronous client of the storefront's REST interface. Every call blocks until the store
// has answered, so callers run it on worker threads; any thread may call any operation. One
// refresh of the access token is on the wire at a time, and threads that meet a 401 meanwhile
// wait for it and share its result.
#ifndef LUMENPRESS_BOOKSTORE_API_H
#define LUMENPRESS_BOOKSTORE_API_H

#include <json/json.h>

#include <QString>
#include <QVector>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "card.h"
#include "http_request.h"
#include "purchase_books_col.h"

class BookstoreApi {
public:
  enum ApiError {
    kNoError = 0,
    kNotAuthorized = 1,
    kHttpError = 2,
    kFail = 3,
    kRefreshFailed = 4,
    kNetworkError = 5,
    kWrongEmailFormat = 6,
  };

  struct LoginInfo {
    std::string access_token;
    std::string refresh_token;
    std::string expires_in;
    // 0 on success, -1 on a transport failure, else the store's own "code" of the refusal.
    int code = 0;
  };

  struct UserInfo {
    int id = 0;
    std::string email;
    std::string firstname;
    std::string lastname;
  };

  struct StoreInfo {
    std::string url;
    std::string language;
    std::string langCode;
    bool disabled = false;
  };

  struct PaymentMethodInfo {
    std::string country;
    std::string title;
    std::string image;
    std::string link;
    std::string getParams;
    std::string redirectUrl;
    std::string country_id;
    std::string method;
    // Ids separated by commas.
    std::string agreement_ids;
    std::string region_id;
    std::string street;
    std::string postcode;
    std::string city;
    std::string telephone;
    bool usePaymentInformation = true;
    std::string link_rebill;
  };

  struct SearchSuggestionInfo {
    std::string type;
    std::string title;
    std::string author;
    std::string image;
    std::string urlOpds;
  };

  struct BookItem {
    std::string item_id;
    std::string name;
    std::string author;
  };

  using HttpRequest = lumenpress::utilities::HttpRequest;
  using Card = lumenpress::bookstore::Card;
  using PurchaseBooksCol = lumenpress::bookstore::PurchaseBooksCol;

  // Reads the tokens kept in bookstore.cfg; `tokensChanged` runs after every change of them,
  // on the thread that made it.
  explicit BookstoreApi(std::function<void()> tokensChanged);
  BookstoreApi(const BookstoreApi &) = delete;
  BookstoreApi &operator=(const BookstoreApi &) = delete;

  void setTokens(const std::string &access, const std::string &refresh);
  // Leaves bookstore.cfg as it is.
  void clearTokens();
  bool hasAccessToken() const;
  // At once, even while a refresh is on the wire.
  std::string currentAccessToken() const;
  std::string currentRefreshToken() const;
  // After a refresh on the wire has ended.
  std::string accessTokenForRequest() const;
  std::string baseUrl() const;
  // One trailing slash is dropped.
  void setBaseUrl(const std::string &url);
  // err is the transport's error (0 for an HTTP failure), code the HTTP status.
  void setErrorCallback(std::function<void(int err, int code)> cb);

  ApiError refreshToken(const std::string oldAccessToken);
  // Runs `request`, and again after a refresh when it met a 401; the request is sent as it
  // was built, old token and all.
  ApiError performRequestWithRefreshing(const HttpRequest &request, long *code, std::vector<char> *response);

  // The account.
  ApiError checkUser(const std::string &email, bool *exists);
  std::vector<StoreInfo> getStores(const std::string &code);
  ApiError createAccount(const std::string &email, const std::string &firstname, const std::string &lastname,
                         const std::string &password);
  // Right after a successful auth, on the same thread.
  ApiError setSubscription(int marketing);
  // Stores the tokens it gets, and empties them on any failure.
  LoginInfo auth(const std::string &email, const std::string &password);
  ApiError getUserInfo(UserInfo *out);

  // Cart and checkout.
  ApiError createQuote(std::string *quoteId);
  ApiError clearCart(std::string *result);
  ApiError checkBook(const PurchaseBooksCol &books, bool *purchased);
  ApiError checkOutCheck(const PurchaseBooksCol &books, std::string email, bool *salable);
  ApiError addToCart(const std::string &quoteId, const PurchaseBooksCol &books);
  ApiError createOrder(const UserInfo &user, const PaymentMethodInfo &method, std::string *orderId);
  ApiError setPaymentSource(const std::string &orderId);
  // The first argument only travels into the retry.
  ApiError getPaymentStatus(const std::string &orderId, const std::string &quoteId, std::string *status);
  // The series price as the store words it, quotes and all.
  ApiError getGroupedProductCount(const QVector<QString> &ids, QString *result);

  // Payment methods and cards.
  ApiError getPaymentMethods(std::vector<PaymentMethodInfo> *methods);
  ApiError getPaymentMethods2(std::vector<PaymentMethodInfo> *methods);
  ApiError getLastUsedCard(std::vector<Card> &cards);
  ApiError getHgwccCards(std::vector<Card> *cards);
  ApiError removeHgwccCard(const std::string &cardId);
  ApiError hgwccRebill(const std::string &quoteId, const std::string &cardId);
  ApiError getPayonlineCards(std::vector<Card> *cards);
  ApiError removePayOnlineCard(int id);
  ApiError getPayOnlineLink(const std::string &orderId, bool rebillRemember, const std::string &rebillCard,
                            std::string *link);
  // Posts to the card gateway: what follows the "?" of `url` is the form.
  ApiError PerformPayOnlineRequest(const std::string &url, std::vector<char> *response, long *code);
  // The card fields go into the form exactly as given, unescaped, which the gateway expects.
  ApiError PerformPayOnlineRequest(const std::string &url, const std::string &cardHolderName,
                                   const std::string &cardNumber, const std::string &cardExpDate,
                                   const std::string &cardCvv, const std::string &issuer, const std::string &email,
                                   std::vector<char> *response, long *code);
  // 0 on success, libcurl's code when the transfer failed, -1 for anything else.
  static int PerformPayOnlineRequestInt(HttpRequest request, long *code, std::vector<char> *response);

  // Purchases, wish list and suggestions.
  ApiError getPurchased(std::vector<BookItem> *books);
  ApiError addToWishList(const std::string &productId, bool *done);
  ApiError removeFromWishList(const std::shared_ptr<PurchaseBooksCol> books, bool *done);
  ApiError getSearchSuggestion(std::string &term, std::vector<SearchSuggestionInfo> *suggestions);

  // The work of the calls above. A call that meets a 401 refreshes the token and runs its
  // Impl once more with retryOnUnauthorized false, which rebuilds the request.
  ApiError getUserInfoImpl(bool retryOnUnauthorized, UserInfo *out);
  ApiError createQuoteImpl(bool retryOnUnauthorized, std::string *quoteId);
  ApiError clearCartImpl(bool retryOnUnauthorized, std::string *result);
  ApiError checkBookImpl(bool retryOnUnauthorized, const PurchaseBooksCol &books, bool *purchased);
  ApiError checkOutCheckImpl(const PurchaseBooksCol &books, std::string email, bool *salable);
  ApiError addToCartImpl(const std::string &quoteId, const PurchaseBooksCol &books, bool retryOnUnauthorized);
  ApiError createOrderImpl(const UserInfo &user, const PaymentMethodInfo &method, bool retryOnUnauthorized,
                           std::string *orderId);
  ApiError setPaymentSourceImpl(const std::string &orderId);
  ApiError getPaymentStatusImpl(const std::string &orderId, const std::string &quoteId, bool retryOnUnauthorized,
                                std::string *status);
  ApiError getLastUsedCardImpl(std::vector<Card> &cards);
  ApiError getPurchasedImpl(bool retryOnUnauthorized, std::vector<BookItem> *books);
  ApiError addToWishListImpl(bool retryOnUnauthorized, const std::string &productId, bool *done);
  ApiError removeFromWishListImpl(bool retryOnUnauthorized, const std::shared_ptr<PurchaseBooksCol> books, bool *done);
  ApiError getSearchSuggestionImpl(std::string &term, std::vector<SearchSuggestionInfo> *suggestions);

private:
  static constexpr int kTimeoutSeconds = 30;

  // How a call of the Impl family reports its failures: `name` opens its log line, and the
  // flags say whether the error callback hears of a transport failure or of a bad status.
  struct CallReport {
    const char *name;
    bool transportCallback = true;
    bool statusCallback = true;
  };
  using Answered = std::function<ApiError(const std::vector<char> &response)>;
  using Retry = std::function<ApiError()>;

  HttpRequest newRequest(const std::string &method, const std::string &path) const;
  static void addJsonBody(HttpRequest *request, const Json::Value &body);
  void addSharedHeaders(HttpRequest *request, const std::string &token) const;
  // A POST with a JSON body and the shared headers, as most calls send.
  HttpRequest authorisedPost(const std::string &path, const std::string &token, const Json::Value &body) const;
  // One exchange of an Impl: a 200 goes to `answered`; a 401 refreshes and runs `retry` when
  // `retryOnUnauthorized`.
  ApiError perform(bool retryOnUnauthorized, const std::string &token, const HttpRequest &request,
                   const CallReport &report, const Answered &answered, const Retry &retry);
  bool sendLogged(const HttpRequest &request, long *code, std::vector<char> *response);
  ApiError refreshAfterUnauthorized(long *code, std::vector<char> *response);
  // A POST of `body` and nothing else: no token goes along. The transport's result.
  int postPlain(const char *path, const Json::Value &body, long *code, std::vector<char> *response);
  // A POST of `body` with the access token added, through performRequestWithRefreshing.
  ApiError postWithToken(const char *path, Json::Value body, std::vector<char> *response);
  ApiError storeRefreshedToken(const std::vector<char> &response, std::unique_lock<std::mutex> &lock);
  ApiError refusedRefresh(long code, std::unique_lock<std::mutex> &lock);
  void storeTokens(const std::string &access, const std::string &refresh);
  void reportError(int err, long code) const;
  void notifyTokensChanged() const;
  std::string paymentSource() const;
  ApiError readCards(const std::vector<char> &response, const char *idMember, const char *numberMember,
                     const char *methodMember, std::vector<Card> *cards) const;
  ApiError readPaymentMethods(const char *name, const char *path, bool extended,
                              std::vector<PaymentMethodInfo> *methods);

  std::string baseUrl_;
  std::string accessToken;
  std::string refreshToken_;
  std::string modelNumber;
  bool refreshInProgress = false;
  mutable std::condition_variable refreshDone;
  mutable std::mutex tokenMutex;
  mutable std::mutex baseUrlMutex;
  std::function<void()> tokensChanged;
  std::function<void(int err, int code)> errorCallback;
  std::map<std::string, std::string> extraHeaders;
};

#endif

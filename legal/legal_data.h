// The device's store of legal documents and of the owner's consent to them, shared by the
// device's applications. Every operation locks, reloads the store from disk, works and saves;
// the content is enciphered at rest with a key and vector made anew at every save.
#ifndef LUMENPRESS_LEGAL_DATA_H
#define LUMENPRESS_LEGAL_DATA_H

#include <cstdint>
#include <string>
#include <vector>

#include "legal_document.h"

namespace lumenpress::legal {

class LegalData {
public:
  static constexpr int kOk = 0;
  static constexpr int kNotFound = -8;
  static constexpr const char *kStorePath = "/mnt/ext1/system/config/legalinfo.cfg";
  static constexpr const char *kLockPath = "/tmp/legal_lock";

  void mergeDocument(const LegalDocument &doc);
  void mergeDocument(const std::vector<LegalDocument> &docs);
  void removeDocument(const LegalDocument &doc);
  void removeDocument(const std::vector<LegalDocument> &docs);
  // An empty sessionId stands for the store's own.
  int setAgreement(const std::string &name, const std::string &version, const std::string &userId,
                   const std::string &sessionId, int status, std::int64_t time);
  int markSent(const std::string &name, const std::string &version);
  int getAgreement(const std::string &name, const std::string &version, LegalAgreement &out);
  void getDocuments(std::vector<LegalDocument> &out);
  // The latest version of each document that applies to one of the services.
  void getDocumentsForServices(std::vector<LegalDocument> &out, const std::vector<std::string> &services);

  // Two values kept beside the store, outside its lock.
  static std::string readTs();
  static void writeTs(const std::string &value);
  static std::string readLn();
  static void writeLn(const std::string &value);

private:
  void load();
  bool save();
  LegalDocument *find(const std::string &name, const std::string &version);

  LegalDocuments documents;
  std::string sessionId;
  std::string key;
  std::string iv;
};

}  // namespace lumenpress::legal

#endif

#include "legal_data.h"

#include "built_in_documents.h"
#include "cfg_wrapper.h"
#include "document_version.h"
#include "file_lock.h"
#include "legal_cipher.h"
#include "legal_documents_json.h"
#include "lp_log.h"
#include "serialization_utils.h"

using lumenpress::utilities::CfgSecret;
using lumenpress::utilities::CfgWrapper;
using lumenpress::utilities::SerializationUtils;

namespace lumenpress::legal {

namespace {

std::string readSecret(const char *key) {
  const CfgWrapper config(LegalData::kStorePath, 0);
  return config.read<CfgSecret>(key, "");
}

void writeSecret(const char *key, const std::string &value) {
  CfgWrapper config(LegalData::kStorePath, 1);
  config.write<CfgSecret>(key, value);
  config.saveAndClose();
}

}  // namespace

void LegalData::load() {
  documents.clear();
  sessionId.clear();
  const CfgWrapper config(kStorePath, 0);
  key = SerializationUtils::FromHex(config.read<CfgSecret>("key", ""));
  iv = SerializationUtils::FromHex(config.read<CfgSecret>("iv", ""));
  BuiltInDocuments::seed(&documents);
  const std::string data = config.read<std::string>("data", "");
  if (!data.empty()) LegalDocumentsJson::read(LegalCipher::decrypt(data, key, iv), &documents);
  const std::string session = config.read<std::string>("si", "");
  if (!session.empty()) sessionId = LegalCipher::decrypt(session, key, iv);
}

// The configuration file is written whole to a new file and renamed, so a save cut short
// leaves the store before it.
bool LegalData::save() {
  key = LegalCipher::randomBytes();
  iv = LegalCipher::randomBytes();
  if (key.empty() || iv.empty()) {
    LP_LOG(LP_LOG_ERROR, "Cannot read /dev/urandom; the legal store is not saved");
    return false;
  }
  const std::string data = LegalCipher::encrypt(LegalDocumentsJson::write(documents), key, iv);
  const std::string session = LegalCipher::encrypt(sessionId, key, iv);
  CfgWrapper config(kStorePath, 1);
  config.write<CfgSecret>("key", SerializationUtils::ToHex(key));
  config.write<CfgSecret>("iv", SerializationUtils::ToHex(iv));
  config.write<std::string>("si", session);
  config.write<std::string>("data", data);
  return config.saveAndClose();
}

LegalDocument *LegalData::find(const std::string &name, const std::string &version) {
  const auto versions = documents.find(name);
  if (versions == documents.end()) return nullptr;
  const auto document = versions->second.find(version);
  return document == versions->second.end() ? nullptr : &document->second;
}

void LegalData::mergeDocument(const LegalDocument &doc) {
  mergeDocument(std::vector<LegalDocument>{doc});
}

void LegalData::mergeDocument(const std::vector<LegalDocument> &docs) {
  const FileLock lock(kLockPath);
  load();
  for (const LegalDocument &doc : docs) {
    LegalDocument &record = documents[doc.name][doc.version];
    const LegalAgreement kept = record.agreement;
    const bool existed = !record.name.empty();
    record = doc;
    if (existed) record.agreement = kept;
  }
  save();
}

void LegalData::removeDocument(const LegalDocument &doc) {
  removeDocument(std::vector<LegalDocument>{doc});
}

void LegalData::removeDocument(const std::vector<LegalDocument> &docs) {
  const FileLock lock(kLockPath);
  load();
  for (const LegalDocument &doc : docs) {
    const auto versions = documents.find(doc.name);
    if (versions == documents.end()) continue;
    versions->second.erase(doc.version);
    if (versions->second.empty()) documents.erase(versions);
  }
  save();
}

int LegalData::setAgreement(const std::string &name, const std::string &version, const std::string &userId,
                            const std::string &sessionId, int status, std::int64_t time) {
  const FileLock lock(kLockPath);
  load();
  LegalDocument *document = find(name, version);
  if (!document) return kNotFound;
  document->agreement = {userId, sessionId.empty() ? this->sessionId : sessionId, status, time, false};
  save();
  return kOk;
}

int LegalData::markSent(const std::string &name, const std::string &version) {
  const FileLock lock(kLockPath);
  load();
  LegalDocument *document = find(name, version);
  if (!document) return kNotFound;
  document->agreement.sent_to_server = true;
  save();
  return kOk;
}

int LegalData::getAgreement(const std::string &name, const std::string &version, LegalAgreement &out) {
  const FileLock lock(kLockPath);
  load();
  const LegalDocument *document = find(name, version);
  if (!document) return kNotFound;
  out = document->agreement;
  return kOk;
}

void LegalData::getDocuments(std::vector<LegalDocument> &out) {
  const FileLock lock(kLockPath);
  load();
  out.clear();
  for (const auto &[name, versions] : documents) {
    for (const auto &[version, document] : versions) out.push_back(document);
  }
}

void LegalData::getDocumentsForServices(std::vector<LegalDocument> &out, const std::vector<std::string> &services) {
  const FileLock lock(kLockPath);
  load();
  out.clear();
  for (const auto &[name, versions] : documents) {
    const LegalDocument *latest = nullptr;
    for (const auto &[version, document] : versions) {
      bool applies = false;
      for (const auto &service : document.services) {
        for (const auto &wanted : services) applies = applies || service == wanted;
      }
      if (applies && (!latest || DocumentVersion::less(latest->version, version))) latest = &document;
    }
    if (latest) out.push_back(*latest);
  }
}

std::string LegalData::readTs() {
  return readSecret("ts");
}

void LegalData::writeTs(const std::string &value) {
  writeSecret("ts", value);
}

std::string LegalData::readLn() {
  return readSecret("ln");
}

void LegalData::writeLn(const std::string &value) {
  writeSecret("ln", value);
}

}  // namespace lumenpress::legal

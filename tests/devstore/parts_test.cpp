// devstore's parts where a fault would not show through HTTP at once: the seed's sameness,
// feeds kept until the catalogue changes, passwords, fault counting, archives and the command line.
#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <thread>

#include "catalogue.h"
#include "database.h"
#include "fault_injector.h"
#include "feed_cache.h"
#include "options.h"
#include "password_hasher.h"
#include "seeder.h"
#include "sql_connection.h"
#include "zip_writer.h"

using namespace devstore;

namespace {

std::string root() {
  return std::getenv("LUMENPRESS_DEVICE_ROOT");
}

uint32_t read32(const std::string &data, size_t at) {
  uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = (value << 8) | static_cast<unsigned char>(data[at + i]);
  return value;
}

uint16_t read16(const std::string &data, size_t at) {
  return static_cast<uint16_t>(static_cast<unsigned char>(data[at]) | static_cast<unsigned char>(data[at + 1]) << 8);
}

// Reads an archive back through its central directory, as an unzip tool does.
std::map<std::string, std::string> unzip(const std::string &zip) {
  std::map<std::string, std::string> files;
  const size_t end = zip.size() - 22;
  EXPECT_EQ(read32(zip, end), 0x06054b50u);
  size_t entry = read32(zip, end + 16);
  for (int i = 0; i < read16(zip, end + 10); ++i) {
    EXPECT_EQ(read32(zip, entry), 0x02014b50u);
    const uint16_t method = read16(zip, entry + 10);
    const uint32_t crc = read32(zip, entry + 16);
    const uint32_t packed = read32(zip, entry + 20);
    const uint32_t size = read32(zip, entry + 24);
    const uint16_t nameLength = read16(zip, entry + 28);
    const std::string name = zip.substr(entry + 46, nameLength);
    const size_t local = read32(zip, entry + 42);
    const size_t data = local + 30 + read16(zip, local + 26) + read16(zip, local + 28);
    std::string content(size, '\0');
    if (method == 0) {
      content = zip.substr(data, packed);
    } else {
      z_stream stream{};
      inflateInit2(&stream, -MAX_WBITS);
      stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(zip.data() + data));
      stream.avail_in = packed;
      stream.next_out = reinterpret_cast<Bytef *>(content.data());
      stream.avail_out = size;
      EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END) << name;
      inflateEnd(&stream);
    }
    EXPECT_EQ(crc32(0, reinterpret_cast<const Bytef *>(content.data()), size), crc) << name;
    files[name] = content;
    entry += 46 + nameLength;
  }
  return files;
}

std::vector<std::string> catalogueOf(const std::string &folder) {
  std::filesystem::create_directories(folder);
  Database db;
  std::string error;
  EXPECT_TRUE(db.open(folder + "/db.sqlite", &error)) << error;
  EXPECT_TRUE(Seeder(&db).seedIfEmpty());
  EXPECT_TRUE(Seeder(&db).seedIfEmpty()) << "a seeded database is left alone";
  std::vector<std::string> rows;
  for (const auto &row : db.query("SELECT b.id, b.title, p.store_code, p.price FROM books b JOIN prices p ON "
                                  "p.book_id = b.id ORDER BY b.id, p.store_code")) {
    rows.push_back(row.text("id") + " " + row.text("title") + " " + row.text("store_code") + " " + row.text("price"));
  }
  return rows;
}

}  // namespace

TEST(Seeder, EverySeedIsTheSameCatalogue) {
  const auto first = catalogueOf(root() + "/a");
  EXPECT_EQ(first.size(), static_cast<size_t>(Seeder::kBookCount) * 3);
  EXPECT_EQ(first, catalogueOf(root() + "/b"));
}

long long schemaVersion(const std::string &path) {
  SqlConnection db;
  std::string error;
  EXPECT_TRUE(db.open(path, &error)) << error;
  return db.query("PRAGMA user_version;", {}).front().integer("user_version");
}

// A folder from before the numbered steps: some tables, a customer in them, and no version.
TEST(Database, BringsAnOlderFolderUpToDateAndRefusesANewerOne) {
  std::filesystem::create_directories(root() + "/old");
  const std::string path = root() + "/old/db.sqlite";
  std::string error;
  {
    SqlConnection old;
    ASSERT_TRUE(old.open(path, &error)) << error;
    ASSERT_TRUE(
        old.exec("CREATE TABLE customers (id INTEGER PRIMARY KEY, email TEXT NOT NULL UNIQUE COLLATE NOCASE,"
                 " password_hash TEXT NOT NULL, first_name TEXT NOT NULL, last_name TEXT NOT NULL);"
                 "INSERT INTO customers(email, password_hash, first_name, last_name)"
                 " VALUES ('old@example.com', 'x', 'O', 'Ld');",
                 &error))
        << error;
  }
  {
    Database db;
    ASSERT_TRUE(db.open(path, &error)) << error;
    EXPECT_EQ(db.query("SELECT email FROM customers").front().text("email"), "old@example.com");
    EXPECT_EQ(db.query("SELECT name FROM sqlite_master WHERE name IN ('books', 'quotes', 'cards')").size(), 3u)
        << "the later steps' tables exist";
  }
  const long long latest = schemaVersion(path);
  EXPECT_GE(latest, 2);
  Database again;
  ASSERT_TRUE(again.open(path, &error)) << "a second start finds nothing to do: " << error;
  EXPECT_EQ(schemaVersion(path), latest);

  {
    SqlConnection newer;
    ASSERT_TRUE(newer.open(path, &error));
    ASSERT_TRUE(newer.exec("PRAGMA user_version = " + std::to_string(latest + 1) + ";", &error));
  }
  Database refused;
  EXPECT_FALSE(refused.open(path, &error));
  EXPECT_NE(error.find("newer devstore"), std::string::npos) << error;
}

// Changes come from another thread, and so through another connection, as a request's would.
TEST(FeedCache, KeepsFeedsByPathAndQueryUntilTheCatalogueChanges) {
  std::filesystem::create_directories(root() + "/kept");
  Database db;
  std::string error;
  ASSERT_TRUE(db.open(root() + "/kept/db.sqlite", &error)) << error;
  const Catalogue catalogue(&db);
  FeedCache cache(&catalogue);
  int written = 0;
  const auto write = [&]() -> std::optional<std::string> { return "feed " + std::to_string(++written); };
  const auto change = [&](const std::string &sql) { std::thread([&] { EXPECT_GE(db.run(sql), 0) << sql; }).join(); };
  const std::string home = "/de_de/lpress/opds/home";

  const auto first = cache.find(home, write);
  ASSERT_TRUE(first);
  EXPECT_EQ(cache.find(home, write), first);
  EXPECT_EQ(cache.find(home + "?page=2", write)->body, "feed 2");
  change("INSERT INTO customers(email, password_hash, first_name, last_name) VALUES ('a@b.c', 'x', 'A', 'B')");
  EXPECT_EQ(cache.find(home, write), first) << "customers are no part of the catalogue";

  change("INSERT INTO authors(name) VALUES ('Ann')");
  const auto second = cache.find(home, write);
  EXPECT_EQ(second->body, "feed 3");
  EXPECT_NE(second->tag, first->tag);
  change("UPDATE authors SET name = 'Anne'");
  EXPECT_EQ(cache.find(home, write)->body, "feed 4");
  change("DELETE FROM authors");
  EXPECT_EQ(cache.find(home + "?page=2", write)->body, "feed 5");

  EXPECT_EQ(cache.find("/none", [] { return std::optional<std::string>(); }), nullptr);
  EXPECT_EQ(cache.find("/none", write)->body, "feed 6") << "what was not written is not kept";
}

TEST(PasswordHasher, VerifiesOnlyTheRightPasswordAndSaltsEachHash) {
  const std::string stored = PasswordHasher::hash("pässwörd");
  EXPECT_TRUE(PasswordHasher::verify("pässwörd", stored));
  EXPECT_FALSE(PasswordHasher::verify("passwörd", stored));
  EXPECT_FALSE(PasswordHasher::verify("", stored));
  EXPECT_NE(PasswordHasher::hash("pässwörd"), stored);
  for (const char *broken : {"", "pässwörd", "md5$1$00$00", "pbkdf2-sha256$0$00$00", "pbkdf2-sha256$10$zz$"}) {
    EXPECT_FALSE(PasswordHasher::verify("pässwörd", broken)) << broken;
  }
}

TEST(FaultInjector, MatchesPathPrefixesAndCountsDown) {
  FaultInjector faults;
  std::string error;
  Json::Value fault;
  fault["path"] = "/de_de/lpress/opds/genre";
  fault["count"] = 2;
  fault["status"] = 503;
  ASSERT_TRUE(faults.add(fault, &error)) << error;
  EXPECT_FALSE(faults.take("/de_de/lpress/opds/home"));
  EXPECT_EQ(faults.take("/de_de/lpress/opds/genres")->status, 503);
  EXPECT_EQ(faults.take("/de_de/lpress/opds/genre")->kind, "status");
  EXPECT_FALSE(faults.take("/de_de/lpress/opds/genre"));

  for (const char *bad : {R"({"status":500})", R"({"path":"/x"})", R"({"path":"/x","status":99})",
                          R"({"path":"/x","drop":true,"count":0})", "[]"}) {
    Json::Value value;
    Json::Reader().parse(bad, value);
    EXPECT_FALSE(faults.add(value, &error)) << bad;
  }
  faults.stop();
  EXPECT_FALSE(faults.delay(10000)) << "a stopping server cuts delays short";
}

TEST(ZipWriter, ArchivesReadBackWhole) {
  ZipWriter zip;
  std::string binary(70000, '\0');
  for (size_t i = 0; i < binary.size(); ++i) binary[i] = static_cast<char>(i * 7 % 251);
  zip.add("mimetype", "application/epub+zip", false);
  zip.add("OEBPS/Kapitel über.xhtml", "<p>Grüße</p>");
  zip.add("data.bin", binary);
  zip.add("empty", "");
  const auto files = unzip(zip.finish());
  EXPECT_EQ(files.size(), 4u);
  EXPECT_EQ(files.at("mimetype"), "application/epub+zip");
  EXPECT_EQ(files.at("OEBPS/Kapitel über.xhtml"), "<p>Grüße</p>");
  EXPECT_EQ(files.at("data.bin"), binary);
  EXPECT_EQ(files.at("empty"), "");
}

TEST(Options, NeedsAPortAndAFolder) {
  const auto parse = [](std::vector<const char *> args) {
    args.insert(args.begin(), "devstore");
    std::string error;
    return Options::parse(static_cast<int>(args.size()), const_cast<char **>(args.data()), &error);
  };
  const auto options = parse({"--data", "/tmp/store", "--port", "8080"});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->port, 8080);
  for (const auto &bad : std::vector<std::vector<const char *>>{{},
                                                                {"--port", "80"},
                                                                {"--data", "d"},
                                                                {"--port", "70000", "--data", "d"},
                                                                {"--port", "8x", "--data", "d"},
                                                                {"--port", "-1", "--data", "d"},
                                                                {"--port", "1", "--data", "d", "--host"},
                                                                {"--verbose"}}) {
    EXPECT_FALSE(parse(bad));
  }
}

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "device_path.h"
#include "panelkit.h"

using lumenpress::platform::MapDevicePath;
namespace fs = std::filesystem;

namespace {

std::string testName() {
  return ::testing::UnitTest::GetInstance()->current_test_info()->name();
}

// A file of each test's own, so that the cases also run one after another in one process.
std::string testFile() {
  return "/mnt/ext1/system/config/" + testName() + ".cfg";
}

std::string readFile(const std::string &device_path) {
  std::ifstream in(MapDevicePath(device_path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

void writeFile(const std::string &device_path, const std::string &content) {
  std::ofstream(MapDevicePath(device_path), std::ios::binary) << content;
}

// One whole version of a large file: every key carries the version's tag. No secrets, whose
// bytes differ from one save to the next.
void writeVersion(lpconfig *cfg, char tag, int keys) {
  for (int i = 0; i < keys; ++i) {
    const std::string key = "key" + std::to_string(i);
    WriteString(cfg, key.c_str(), (std::string(200, tag) + "=\n\\" + std::to_string(i)).c_str());
  }
}

// The file's bytes after saving the given version from scratch.
std::string versionBytes(char tag, int keys) {
  const std::string path = std::string("/tmp/version-") + tag + ".cfg";
  fs::remove(MapDevicePath(path));
  lpconfig *cfg = OpenConfig(path.c_str(), 1);
  writeVersion(cfg, tag, keys);
  EXPECT_EQ(CloseConfig(cfg), 0);
  return readFile(path);
}

std::string orNull(const char *text) {
  return text ? text : "<null>";
}

std::vector<std::string> strayTemporaries(const std::string &device_folder) {
  std::vector<std::string> names;
  for (const auto &entry : fs::directory_iterator(MapDevicePath(device_folder))) {
    const std::string name = entry.path().filename().string();
    if (name.find(".tmp.") != std::string::npos) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

mode_t modeOf(const std::string &device_path) {
  struct stat status {};
  ::stat(MapDevicePath(device_path).c_str(), &status);
  return status.st_mode & 07777;
}

// Kills savers of `path` while one of their temporary files exists, until `count` are left.
std::vector<std::string> leftoversOfKilledSaves(const std::string &path, std::size_t count) {
  const std::string folder = fs::path(path).parent_path();
  for (int round = 0; round < 100 && strayTemporaries(folder).size() < count; ++round) {
    const std::size_t before = strayTemporaries(folder).size();
    const pid_t child = fork();
    if (child == 0) {
      lpconfig *cfg = OpenConfig(path.c_str(), 1);
      writeVersion(cfg, 'a', 3000);
      for (;;) SaveConfig(cfg);
    }
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (strayTemporaries(folder).size() == before && std::chrono::steady_clock::now() < deadline) {
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
  }
  return strayTemporaries(folder);
}

void backdate(const std::string &device_path) {
  fs::last_write_time(MapDevicePath(device_path), fs::file_time_type::clock::now() - std::chrono::hours(1));
}

}  // namespace

TEST(ConfigFile, OddValuesAndSecretsSurviveCloseAndReopen) {
  const std::string path = testFile();
  const std::vector<std::pair<std::string, std::string>> values = {
      {"equals", "a=b==c="},
      {"newlines", "line1\nline2\n"},
      {"carriage", "one\r\ntwo\r"},
      {"backslashes", "C:\\path\\"},
      {"escaped_n_literally", "\\n is not a newline \\\\n"},
      {"secret_marker_lookalike", "\\sQUJD"},
      {"utf8", "Grüße – 日本"},
      {"empty", ""},
      {"spaces", "  padded  "},
      {"long", std::string(100000, 'x') + "end"},
  };
  lpconfig *cfg = OpenConfig(path.c_str(), 1);
  ASSERT_NE(cfg, nullptr);
  for (const auto &[key, value] : values) {
    WriteString(cfg, key.c_str(), value.c_str());
    WriteSecret(cfg, ("secret_" + key).c_str(), value.c_str());
  }
  ASSERT_EQ(CloseConfig(cfg), 0);

  cfg = OpenConfig(path.c_str(), 0);
  ASSERT_NE(cfg, nullptr);
  EXPECT_EQ(GetConfigKeyCount(cfg), static_cast<int>(values.size() * 2));
  for (const auto &[key, value] : values) {
    EXPECT_EQ(orNull(ReadString(cfg, key.c_str(), nullptr)), value) << key;
    EXPECT_EQ(orNull(ReadSecret(cfg, key.c_str(), nullptr)), value) << "plain value read as secret: " << key;
    EXPECT_EQ(orNull(ReadSecret(cfg, ("secret_" + key).c_str(), nullptr)), value) << key;
  }
  CloseConfigNoSave(cfg);
}

TEST(ConfigFile, HandWrittenFileKeepsGoodLinesAndOrder) {
  const std::string path = testFile();
  writeFile(path,
            "# comment=not a key\n"
            "\n"
            "zeta=last letter\r\n"
            "no equals sign here\n"
            "=no key\n"
            "   \n"
            "alpha= spaced value \n"
            "broken_secret=\\s!!!notbase64\n"
            "url=https://x.test/?a=1&b=2\n"
            "unknown_escape=a\\tb\\\n"
            "zeta=replaced");
  lpconfig *cfg = OpenConfig(path.c_str(), 1);
  ASSERT_NE(cfg, nullptr);
  ASSERT_EQ(GetConfigKeyCount(cfg), 4);
  const char *keys[] = {"zeta", "alpha", "url", "unknown_escape"};
  for (int i = 0; i < 4; ++i) EXPECT_STREQ(GetConfigKey(cfg, i), keys[i]);
  EXPECT_EQ(GetConfigKey(cfg, 4), nullptr);
  EXPECT_EQ(GetConfigKey(cfg, -1), nullptr);
  EXPECT_STREQ(ReadString(cfg, "zeta", ""), "replaced");
  EXPECT_STREQ(ReadString(cfg, "alpha", ""), " spaced value ");
  EXPECT_STREQ(ReadString(cfg, "url", ""), "https://x.test/?a=1&b=2");
  EXPECT_STREQ(ReadString(cfg, "unknown_escape", ""), "a\\tb\\");

  WriteString(cfg, "beta", "new");
  DeleteConfigKey(cfg, "alpha");
  ASSERT_EQ(SaveConfig(cfg), 0);
  CloseConfigNoSave(cfg);
  EXPECT_EQ(readFile(path), "zeta=replaced\nurl=https://x.test/?a=1&b=2\nunknown_escape=a\\\\tb\\\\\nbeta=new\n");
}

TEST(ConfigFile, OpenModesAndKeysTheFormatCannotHold) {
  const std::string path = testFile();
  writeFile(path, "email=a@b.test\n");
  EXPECT_EQ(OpenConfig(MapDevicePath("/mnt/ext1/system/config").c_str(), 0), nullptr) << "a folder is no file";
  EXPECT_EQ(OpenConfig(path.c_str(), 2), nullptr);
  lpconfig *cfg = OpenConfig(path.c_str(), 0);
  ASSERT_NE(cfg, nullptr);
  WriteInt(cfg, "n", 1);
  WriteSecret(cfg, "s", "x");
  EXPECT_EQ(GetConfigKeyCount(cfg), 1) << "read-only";
  CloseConfigNoSave(cfg);

  // Read-write starts empty where there is no file, and makes its folders.
  const char created[] = "/mnt/ext1/system/config/audiobooks/deeper/audiobooks.cfg";
  cfg = OpenConfig(created, 1);
  ASSERT_NE(cfg, nullptr);
  EXPECT_EQ(GetConfigKeyCount(cfg), 0);
  for (const char *key : {"", "a=b", "line\nbreak", "cr\rkey", "#comment"}) WriteString(cfg, key, "v");
  WriteSecret(cfg, "a=b", "v");
  WriteString(cfg, "path", "/mnt/ext1/Books");
  ASSERT_EQ(CloseConfig(cfg), 0);
  EXPECT_EQ(readFile(created), "path=/mnt/ext1/Books\n");
}

TEST(ConfigFile, ReadIntTakesDecimalNumbersOnly) {
  const std::string path = testFile();
  writeFile(path,
            "plain=42\nnegative=-17\nplus=+8\nleading=  12\ntrailing=12  \nmax=2147483647\nmin=-2147483648\n"
            "over=2147483648\nunder=-2147483649\nhuge=99999999999999999999\nword=abc\nmixed=12abc\n"
            "hex=0x10\nempty=\nspaces=   \nfraction=1.5\n");
  lpconfig *cfg = OpenConfig(path.c_str(), 1);
  const std::pair<const char *, int> good[] = {{"plain", 42},    {"negative", -17},   {"plus", 8},     {"leading", 12},
                                               {"trailing", 12}, {"max", 2147483647}, {"min", INT_MIN}};
  for (const auto &[key, value] : good) EXPECT_EQ(ReadInt(cfg, key, -1), value) << key;
  for (const char *bad : {"over", "under", "huge", "word", "mixed", "hex", "empty", "spaces", "fraction", "absent"})
    EXPECT_EQ(ReadInt(cfg, bad, 7), 7) << bad;
  WriteInt(cfg, "written", -5);
  EXPECT_STREQ(ReadString(cfg, "written", ""), "-5");
  CloseConfigNoSave(cfg);
}

TEST(ConfigFile, ReturnedTextOutlivesWritesOfOtherKeys) {
  const std::string path = testFile();
  lpconfig *cfg = OpenConfig(path.c_str(), 1);
  WriteString(cfg, "kept", "stable value");
  WriteSecret(cfg, "kept_secret", "stable secret");
  const char *text = ReadString(cfg, "kept", nullptr);
  const char *secret = ReadSecret(cfg, "kept_secret", nullptr);
  for (int i = 0; i < 1000; ++i) WriteString(cfg, ("k" + std::to_string(i)).c_str(), std::string(i, 'v').c_str());
  for (int i = 0; i < 1000; i += 2) DeleteConfigKey(cfg, ("k" + std::to_string(i)).c_str());
  EXPECT_STREQ(text, "stable value");
  EXPECT_STREQ(secret, "stable secret");
  EXPECT_EQ(GetConfigKeyCount(cfg), 502);
  CloseConfigNoSave(cfg);
}

TEST(ConfigFile, FailedSaveLeavesOldFileAndNoTemporary) {
  const std::string path = testFile();
  writeFile(path, "a=1\n");
  lpconfig *cfg = OpenConfig(path.c_str(), 1);
  WriteString(cfg, "a", "2");
  // A folder that appears where the file was makes the rename fail.
  fs::rename(MapDevicePath(path), MapDevicePath("/tmp/moved.cfg"));
  fs::create_directory(MapDevicePath(path));
  EXPECT_NE(SaveConfig(cfg), 0);
  CloseConfigNoSave(cfg);
  EXPECT_TRUE(fs::is_directory(MapDevicePath(path)));
  EXPECT_TRUE(strayTemporaries("/mnt/ext1/system/config").empty());
  EXPECT_EQ(readFile("/tmp/moved.cfg"), "a=1\n");
}

TEST(ConfigFile, KilledWriterLeavesOneWholeVersion) {
  const std::string path = testFile();
  const int keys = 3000;
  const std::string version_a = versionBytes('a', keys);
  const std::string version_b = versionBytes('b', keys);
  ASSERT_GT(version_a.size(), 600000u);
  writeFile(path, version_a);

  std::mt19937 random(1234);
  std::uniform_int_distribution<int> delay_us(0, 40000);
  for (int round = 0; round < 40; ++round) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      lpconfig *cfg = OpenConfig(path.c_str(), 1);
      for (int i = 0;; ++i) {
        writeVersion(cfg, i % 2 ? 'a' : 'b', keys);
        SaveConfig(cfg);
      }
    }
    usleep(static_cast<useconds_t>(delay_us(random)));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const std::string content = readFile(path);
    ASSERT_TRUE(content == version_a || content == version_b)
        << "round " << round << ", " << content.size() << " bytes";
  }
  lpconfig *cfg = OpenConfig(path.c_str(), 0);
  ASSERT_NE(cfg, nullptr);
  EXPECT_EQ(GetConfigKeyCount(cfg), keys);
  CloseConfigNoSave(cfg);
}

TEST(ConfigFile, ConcurrentSaversEachLeaveAWholeFile) {
  const std::string path = testFile();
  const int keys = 500;
  const std::string version_a = versionBytes('a', keys);
  const std::string version_b = versionBytes('b', keys);
  writeFile(path, version_a);

  std::vector<pid_t> children;
  std::vector<int> exit_codes;
  for (char tag : {'a', 'b'}) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      int failures = 0;
      for (int i = 0; i < 150; ++i) {
        lpconfig *cfg = OpenConfig(path.c_str(), 1);
        if (!cfg) _exit(2);
        writeVersion(cfg, tag, keys);
        failures += CloseConfig(cfg) != 0;
      }
      _exit(failures == 0 ? 0 : 1);
    }
    children.push_back(child);
    exit_codes.push_back(-1);
  }
  // Read while they save: the file is always there and always one whole version.
  for (bool running = true; running;) {
    const std::string content = readFile(path);
    ASSERT_TRUE(content == version_a || content == version_b) << content.size() << " bytes";
    running = false;
    for (std::size_t i = 0; i < children.size(); ++i) {
      int status = 0;
      if (exit_codes[i] == -1 && waitpid(children[i], &status, WNOHANG) == children[i])
        exit_codes[i] = WIFEXITED(status) ? WEXITSTATUS(status) : 128;
      running = running || exit_codes[i] == -1;
    }
  }
  EXPECT_EQ(exit_codes, std::vector<int>({0, 0}));
}

TEST(ConfigFile, HandlesOnSeveralThreadsSaveSafely) {
  const std::string path = testFile();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &path] {
      const std::string own = "/mnt/ext1/system/config/thread" + std::to_string(t) + ".cfg";
      for (int i = 0; i < 30; ++i) {
        for (const std::string &file : {own, path}) {
          lpconfig *cfg = OpenConfig(file.c_str(), 1);
          WriteInt(cfg, "thread", t);
          WriteSecret(cfg, "round", std::to_string(i).c_str());
          EXPECT_EQ(CloseConfig(cfg), 0);
        }
      }
    });
  }
  for (auto &thread : threads) thread.join();
  for (int t = 0; t < 4; ++t) {
    lpconfig *cfg = OpenConfig(("/mnt/ext1/system/config/thread" + std::to_string(t) + ".cfg").c_str(), 0);
    EXPECT_EQ(ReadInt(cfg, "thread", -1), t);
    EXPECT_STREQ(ReadSecret(cfg, "round", ""), "29");
    CloseConfigNoSave(cfg);
  }
}

TEST(ConfigFile, SecretsAreEncipheredWithTheDevicesOwnKeyForItsOwnerOnly) {
  const std::string path = testFile();
  ASSERT_EQ(modeOf("/mnt/secure/secrets.key"), 0600u);
  EXPECT_EQ(fs::file_size(MapDevicePath("/mnt/secure/secrets.key")), 32u);

  writeFile(path, "email=a@b.test\n");
  fs::permissions(MapDevicePath(path), fs::perms(0644));
  lpconfig *cfg = OpenConfig(path.c_str(), 1);
  WriteString(cfg, "display_type", "list");
  ASSERT_EQ(CloseConfig(cfg), 0);
  EXPECT_EQ(modeOf(path), 0644u) << "a file without secrets keeps its mode";
  cfg = OpenConfig(path.c_str(), 1);
  WriteSecret(cfg, "access_token", "secret-token");
  ASSERT_EQ(CloseConfig(cfg), 0);
  EXPECT_EQ(modeOf(path), 0600u);

  // The enciphered value opens only under its own key, unchanged, with this device's key.
  const std::string content = readFile(path);
  ASSERT_EQ(content.find("secret-token"), std::string::npos);
  const std::size_t start = content.find("access_token=") + 13;
  const std::string sealed = content.substr(start, content.find('\n', start) - start);
  std::string changed = sealed;
  changed[sealed.size() / 2] = changed[sealed.size() / 2] == 'A' ? 'B' : 'A';
  writeFile(path, "access_token=" + sealed + "\nmoved=" + sealed + "\nchanged=" + changed + "\n");
  cfg = OpenConfig(path.c_str(), 0);
  EXPECT_STREQ(ReadSecret(cfg, "access_token", "none"), "secret-token");
  EXPECT_STREQ(ReadSecret(cfg, "moved", "none"), "none");
  EXPECT_STREQ(ReadSecret(cfg, "changed", "none"), "none");
  CloseConfigNoSave(cfg);
  std::ofstream(MapDevicePath("/mnt/secure/secrets.key"), std::ios::binary | std::ios::trunc) << std::string(32, 'k');
  cfg = OpenConfig(path.c_str(), 0);
  EXPECT_STREQ(ReadSecret(cfg, "access_token", "none"), "none") << "another device's key opened it";
  CloseConfigNoSave(cfg);
}

TEST(ConfigFile, SecretsOfTheOldScrambledFormReadAndAreEncipheredAtTheNextSave) {
  const std::string path = testFile();
  writeFile(path, "access_token=\\sNa9zo1+fD/hflXrl\nemail=a@b.test\n");
  lpconfig *cfg = OpenConfig(path.c_str(), 1);
  EXPECT_STREQ(ReadSecret(cfg, "access_token", ""), "old-token=42");
  ASSERT_EQ(CloseConfig(cfg), 0);
  EXPECT_EQ(readFile(path).find("access_token=\\s"), std::string::npos) << readFile(path);
  cfg = OpenConfig(path.c_str(), 0);
  EXPECT_STREQ(ReadSecret(cfg, "access_token", ""), "old-token=42");
  EXPECT_STREQ(ReadString(cfg, "email", ""), "a@b.test");
  CloseConfigNoSave(cfg);
}

TEST(ConfigFile, FirstKeysKeepTheirFirstCharacterAcrossSaveAndReload) {
  const std::string path = testFile();
  const std::string bom = "\xEF\xBB\xBF";
  for (const std::string &first : {bom, bom + "#note", bom + "key", bom + bom, std::string(" lead"),
                                   std::string("\tkey"), std::string("\\s"), std::string("!x")}) {
    fs::remove(MapDevicePath(path));
    lpconfig *cfg = OpenConfig(path.c_str(), 1);
    WriteString(cfg, first.c_str(), "first value");
    WriteString(cfg, "next", "");
    ASSERT_EQ(CloseConfig(cfg), 0);
    cfg = OpenConfig(path.c_str(), 0);
    ASSERT_EQ(GetConfigKeyCount(cfg), 2) << first;
    EXPECT_EQ(orNull(GetConfigKey(cfg, 0)), first);
    EXPECT_EQ(orNull(ReadString(cfg, first.c_str(), nullptr)), "first value") << first;
    CloseConfigNoSave(cfg);
  }
  // Another tool's file that starts with a byte order mark: the mark is no part of the first key.
  writeFile(path, bom + "language=de\n");
  lpconfig *cfg = OpenConfig(path.c_str(), 0);
  EXPECT_STREQ(GetConfigKey(cfg, 0), "language");
  CloseConfigNoSave(cfg);
}

TEST(ConfigFile, TemporariesOfKilledSavesAreRemovedAtTheNextStart) {
  // A folder of its own, so that this process first opens a file there below.
  const std::string folder = "/mnt/ext1/system/config/" + testName();
  const std::string path = folder + "/bookstore.cfg";
  fs::create_directories(MapDevicePath(folder));
  const std::vector<std::string> left = leftoversOfKilledSaves(path, 2);
  ASSERT_GE(left.size(), 2u);

  // All but one of the leftovers date from before this process; beside them, as old, lie the
  // temporary file of a saver still at work and a file of another name.
  const pid_t saver = fork();
  if (saver == 0) {
    pause();
    _exit(0);
  }
  const std::string busy = ".bookstore.cfg.tmp." + std::to_string(saver) + ".0";
  writeFile(folder + "/" + busy, "");
  writeFile(folder + "/notes.tmp", "");
  for (const auto &entry : fs::directory_iterator(MapDevicePath(folder))) {
    if (entry.path().filename() != left[0]) backdate(entry.path());
  }
  CloseConfigNoSave(OpenConfig(path.c_str(), 1));
  kill(saver, SIGKILL);
  waitpid(saver, nullptr, 0);

  std::vector<std::string> kept = {left[0], busy};
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(strayTemporaries(folder), kept);
  EXPECT_TRUE(fs::exists(MapDevicePath(folder + "/notes.tmp")));
}

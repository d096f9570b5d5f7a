#include "device_tree.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "device_path.h"
#include "secret_cipher.h"

namespace fs = std::filesystem;

namespace lumenpress::platform {

namespace {

const char *const kDevicePrefixes[] = {"/mnt/", "/coreapp/", "/tmp/"};

const char *const kFolders[] = {
    "/mnt/ext1/system/config",
    "/mnt/ext1/system/license",
    "/mnt/ext1/Downloads",
    "/mnt/secure",
    "/coreapp/config",
    "/coreapp/bin",
    "/coreapp/license",
    "/coreapp/lang",
    "/coreapp/resources",
    "/tmp",
    "/host",
};

bool startsWith(const std::string &text, const std::string &prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

std::string randomSerial() {
  std::random_device device;
  std::uniform_int_distribution<int> digit(0, 15);
  std::string serial = "LP740";
  for (int i = 0; i < 11; ++i) serial += "0123456789ABCDEF"[digit(device)];
  return serial;
}

// Writes a file only when it is missing, so a device keeps what it has been given.
void seed(const std::string &path, const std::string &content) {
  if (fs::exists(path)) return;
  const std::string temp = path + ".seed";
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    out << content;
    if (!out) {
      std::fprintf(stderr, "device tree: cannot write %s\n", temp.c_str());
      return;
    }
  }
  std::error_code error;
  fs::rename(temp, path, error);
}

std::string defaultLanguage() {
  const char *lang = std::getenv("LUMENPRESS_LANGUAGE");
  return lang && *lang ? lang : "en";
}

}  // namespace

// Never destroyed, like the log sink that asks it where the log lies.
DeviceTree &DeviceTree::instance() {
  static auto *tree = new DeviceTree;
  return *tree;
}

std::string DeviceTree::configuredRoot() {
  const char *root = std::getenv("LUMENPRESS_DEVICE_ROOT");
  if (root && *root) return fs::path(root).lexically_normal().string();
  const char *data = std::getenv("XDG_DATA_HOME");
  std::string base =
      data && *data ? data : std::string(std::getenv("HOME") ? std::getenv("HOME") : "/tmp") + "/.local/share";
  return base + "/kiosk-2/device";
}

std::string DeviceTree::root() {
  std::string root = configuredRoot();
  while (root.size() > 1 && root.back() == '/') root.pop_back();
  std::lock_guard<std::mutex> lock(mutex_);
  if (filled_root_ != root) {
    fill(root);
    filled_root_ = root;
  }
  return root;
}

std::string DeviceTree::map(const std::string &device_path) {
  const std::string base = root();
  if (startsWith(device_path, base + "/") || device_path == base) return device_path;
  if (device_path == "/tmp") return base + device_path;
  for (const char *prefix : kDevicePrefixes) {
    if (startsWith(device_path, prefix)) return base + device_path;
  }
  return device_path;
}

std::string DeviceTree::hostPath(const std::string &name) {
  return root() + "/host/" + name;
}

void DeviceTree::fill(const std::string &root) {
  std::error_code error;
  for (const char *folder : kFolders) {
    fs::create_directories(root + folder, error);
    if (error)
      std::fprintf(stderr, "device tree: cannot create %s%s: %s\n", root.c_str(), folder, error.message().c_str());
  }
  seed(root + "/mnt/ext1/system/config/global.cfg",
       "language=" + defaultLanguage() +
           "\nscreen_inversion=0\ndisplay_brightness=100\ndisplay_contrast=100\ndisplay_gamma=100\n");
  seed(root + "/mnt/secure/device.cfg",
       "serial=" + randomSerial() + "\nprohibit_skip_BS_auth=0\nprohibit_skip_BS_auth_force=0\n");
  seed(root + "/coreapp/config/device.cfg",
       "model=LumenPress Reader 740-2\nsoftware_version=U740.6.10.1508\nuse_audio_player=1\n"
       "has_audio=1\ntouchpanel=1\nwifi=1\ncustomized_partner=0\ndisplay_colormask=0\nfile_cache_limit_kb=65536\n");
  seed(root + "/mnt/secure/fwinfo.txt", "Model: 740-2\nSW Version: 6.10.1508;\n");
  if (!SecretCipher::createKey(root + SecretCipher::kKeyPath))
    std::fprintf(stderr, "device tree: cannot create %s%s\n", root.c_str(), SecretCipher::kKeyPath);
  installFiles(LP_LANG_SOURCE_DIR, ".txt", root + "/coreapp/lang");
  installFiles(LP_RESOURCE_SOURCE_DIR, ".png", root + "/coreapp/resources");
  installFiles(LP_LICENSE_SOURCE_DIR, ".html", root + "/coreapp/license");
  linkProgram(LP_CONSENT_REFRESH_PATH, root + "/coreapp/bin/consent_refresh");
  linkProgram(LP_PANE_STANDIN_PATH, root + "/coreapp/bin/spawn_pane.app");
  linkProgram(LP_PANE_STANDIN_PATH, root + "/coreapp/bin/webpane.app");
}

// The device's own programs are stood in for by this build's: a link to each.
void DeviceTree::linkProgram(const char *program, const std::string &link) {
  std::error_code error;
  if (fs::read_symlink(link, error) == program) return;
  fs::remove(link, error);
  fs::create_symlink(program, link, error);
  if (error) std::fprintf(stderr, "device tree: cannot link %s: %s\n", link.c_str(), error.message().c_str());
}

// Language files, resources and the built-in legal documents follow the build: a newer build's files replace older
// copies.
void DeviceTree::installFiles(const char *source, const char *extension, const std::string &folder) {
  std::error_code error;
  for (const auto &entry : fs::directory_iterator(source, error)) {
    if (entry.path().extension() != extension) continue;
    const fs::path target = fs::path(folder) / entry.path().filename();
    std::error_code stat_error;
    const bool current = fs::exists(target, stat_error) &&
                         fs::last_write_time(target, stat_error) >= fs::last_write_time(entry.path(), stat_error) &&
                         fs::file_size(target, stat_error) == fs::file_size(entry.path(), stat_error);
    if (!current) fs::copy_file(entry.path(), target, fs::copy_options::overwrite_existing, stat_error);
  }
}

std::string DeviceRoot() {
  return DeviceTree::instance().root();
}

std::string MapDevicePath(const std::string &device_path) {
  return DeviceTree::instance().map(device_path);
}

}  // namespace lumenpress::platform

// The device's UI and task library: log sink, tasks, configuration files,
// language texts, network, device identity and book opening.
#ifndef LUMENPRESS_PANELKIT_H
#define LUMENPRESS_PANELKIT_H

#ifdef __cplusplus
extern "C" {
#endif

// ---- Logging ----------------------------------------------------------------

// Process id shown in every log line; the library sets it, callers only read it.
extern int g_process_pid;

// Levels: 1 error, 2 warning, 3 information, 4 verbose. Callable from any thread.
void lp_print_log2(int level, const char *file, int line, const char *function, const char *format, ...)
    __attribute__((format(printf, 5, 6)));

// ---- Tasks and device applications -------------------------------------------

typedef struct lpbitmap lpbitmap;

// Request handler of the device shell: request number, packed data, its size, reserved.
typedef int (*lp_request_handler)(int request, void *data, int size, int reserved);

int GetCurrentTask(void);
void SetTaskParameters(int task, const char *name, const char *title, const lpbitmap *icon, int flags);
// The named icon resource, or deflt when there is none.
const lpbitmap *GetResource(const char *name, const lpbitmap *deflt);
int OpenTask(const char *path, int argc, const char *const *argv, int flags);
int NewTask(const char *path, const char *name, const char *const *argv, int flags, int activate);
int NewTaskEx(const char *path, const char *name, int argc, const char *const *argv, int flags, int activate);
int CloseTask(int task, int flags, int wait);
// Task id of a running application, by path or by file name; -1 when none runs.
int FindTaskByAppName(const char *name);
int IsTaskActive(void);
int GetPreviousTaskInStack(int *task, int *subtask);
int SetActiveTask(int task, int subtask);
int SendRequestTo(int task, int request, const void *data, int size, int flags, int timeout_ms);
int SetRequestListener(int request, int flags, lp_request_handler handler);
// Unpacks parameters of a request into a malloc'ed array of C strings.
int UnpackParameters(const void *data, int size, int *count, char ***strings);
int OpenBook(const char *path, const char *parameters, int flags);
int OpenBook2(const char *app, int argc, const char *const *argv, int flags);

// Flags of the device's multi-process control; byte 1 set means the shell
// itself takes back the screen when the application ends.
extern unsigned char pkmpc[16];

// Name of the device's default font for the given role, UTF-8.
const char *pk_get_default_font(int role);

// ---- Configuration files ------------------------------------------------------

typedef struct lpconfig lpconfig;

// mode 0 opens an existing file for reading (null when missing);
// mode 1 opens for reading and writing, creating the file on save.
lpconfig *OpenConfig(const char *path, int mode);
// Writes the file atomically; 0 on success.
int SaveConfig(lpconfig *cfg);
// Saves, then closes; 0 on success.
int CloseConfig(lpconfig *cfg);
void CloseConfigNoSave(lpconfig *cfg);
// Returned texts stay valid until the key is written or the handle is closed.
const char *ReadString(lpconfig *cfg, const char *key, const char *deflt);
int ReadInt(lpconfig *cfg, const char *key, int deflt);
const char *ReadSecret(lpconfig *cfg, const char *key, const char *deflt);
void WriteString(lpconfig *cfg, const char *key, const char *value);
void WriteInt(lpconfig *cfg, const char *key, int value);
void WriteSecret(lpconfig *cfg, const char *key, const char *value);
void DeleteConfigKey(lpconfig *cfg, const char *key);
int GetConfigKeyCount(lpconfig *cfg);
const char *GetConfigKey(lpconfig *cfg, int index);

// ---- Language texts -------------------------------------------------------------

// Text of a "@" or "@$" key in the current language; other strings come back unchanged.
const char *GetLangText(const char *key);
const char *GetLangTextPlural(const char *key, int count);
// Two-letter code of the device's language, from global.cfg.
const char *currentLang(void);

// ---- Network --------------------------------------------------------------------

// Bits 0xf00 of the result are set while a connection stands.
int QueryNetwork(void);
// Asks the device to connect; 0 on success.
int NetConnect(const char *name);
int NetConnectSilent(const char *name);
// Proxy of the device as text for libcurl, or null; release with clean_proxy_object.
char *get_proxy(void);
void clean_proxy_object(char *proxy);

// ---- Device identity --------------------------------------------------------------

const char *GetDeviceModel(void);
const char *GetSerialNumber(void);
const char *GetSoftwareVersion(void);
int GetCustomizedPartner(void);

#ifdef __cplusplus
}
#endif

#endif

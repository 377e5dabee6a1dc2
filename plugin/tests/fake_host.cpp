#include "fake_host.h"

#include <cstring>

namespace {

FakeHost* g_host = nullptr;

std::u16string FromHost(const A_UTF16Char* text) {
  std::u16string out;
  while (text && *text) out += static_cast<char16_t>(*text++);
  return out;
}

A_Err ReportInfoUnicode(AEGP_PluginID, const A_UTF16Char* text) {
  g_host->reports.push_back(FromHost(text));
  return A_Err_NONE;
}

A_Err CreateProgress(const A_UTF16Char* title, const A_UTF16Char*, PF_Boolean, PF_AppProgressDialogP* dialog) {
  if (g_host->refuseProgressDialog) return A_Err_GENERIC;
  g_host->progressTitles.push_back(FromHost(title));
  *dialog = reinterpret_cast<PF_AppProgressDialogP>(g_host);
  return A_Err_NONE;
}

A_Err UpdateProgress(PF_AppProgressDialogP, A_long count, A_long) {
  g_host->progressCounts.push_back(count);
  const bool cancel = static_cast<int>(g_host->progressCounts.size()) - 1 == g_host->cancelAtUpdate;
  return cancel ? A_Err(PF_Interrupt_CANCEL) : A_Err(A_Err_NONE);
}

A_Err DisposeProgress(PF_AppProgressDialogP) {
  ++g_host->progressDisposals;
  return A_Err_NONE;
}

// Memory handles hold their bytes in a heap vector.
AEGP_MemHandle NewHandleOf(std::vector<char> bytes) {
  ++g_host->liveHandles;
  return reinterpret_cast<AEGP_MemHandle>(new std::vector<char>(std::move(bytes)));
}
AEGP_MemHandle NewHandle(const std::u16string& text) {
  std::vector<char> bytes((text.size() + 1) * sizeof(char16_t), 0);
  std::memcpy(bytes.data(), text.data(), text.size() * sizeof(char16_t));
  return NewHandleOf(std::move(bytes));
}
std::vector<char>* Bytes(AEGP_MemHandle handle) { return reinterpret_cast<std::vector<char>*>(handle); }

A_Err FreeHandle(AEGP_MemHandle handle) {
  --g_host->liveHandles;
  delete Bytes(handle);
  return A_Err_NONE;
}
A_Err LockHandle(AEGP_MemHandle handle, void** data) {
  *data = Bytes(handle)->data();
  return A_Err_NONE;
}
A_Err UnlockHandle(AEGP_MemHandle) { return A_Err_NONE; }
A_Err HandleSize(AEGP_MemHandle handle, AEGP_MemSize* size) {
  *size = static_cast<AEGP_MemSize>(Bytes(handle)->size());
  return A_Err_NONE;
}

std::u16string Widen(const std::string& text) { return std::u16string(text.begin(), text.end()); }

A_Err RegisterWithAEGP(AEGP_GlobalRefcon, const A_char* name, AEGP_PluginID* id) {
  g_host->calls.push_back(std::string("RegisterWithAEGP ") + name);
  *id = 77;
  return A_Err_NONE;
}

A_Err GetPluginPaths(AEGP_PluginID, AEGP_GetPathTypes type, AEGP_MemHandle* handle) {
  if (type != AEGP_GetPathTypes_APP) return A_Err_PARAMETER;
  *handle = NewHandle(Widen(g_host->appFolder));
  return A_Err_NONE;
}

A_Err ExecuteScript(AEGP_PluginID, const A_char* script, A_Boolean, AEGP_MemHandle* result, AEGP_MemHandle* error) {
  g_host->scripts.push_back(script);
  std::vector<char> reply(g_host->scriptReply.begin(), g_host->scriptReply.end());
  reply.push_back('\0');
  if (result) *result = NewHandleOf(std::move(reply));
  if (error) *error = g_host->scriptErr ? NewHandleOf({'\0'}) : nullptr;
  return g_host->scriptErr;
}

A_Err GetLanguage(A_char tag[PF_APP_LANG_TAG_SIZE]) {
  std::strcpy(tag, "en_US");
  return A_Err_NONE;
}

A_Err GetUniqueCommand(AEGP_Command* command) {
  *command = g_host->uniqueCommandErr ? 0 : g_host->uniqueCommand;
  return g_host->uniqueCommandErr;
}
A_Err InsertMenuCommand(AEGP_Command command, const A_char* name, AEGP_MenuID menu, A_long after) {
  g_host->calls.push_back("InsertMenuCommand " + std::to_string(command) + " " + name + " " + std::to_string(menu) +
                          " " + std::to_string(after));
  return g_host->insertMenuErr;
}
A_Err EnableCommand(AEGP_Command command) {
  g_host->calls.push_back("EnableCommand " + std::to_string(command));
  return A_Err_NONE;
}
A_Err DisableCommand(AEGP_Command command) {
  g_host->calls.push_back("DisableCommand " + std::to_string(command));
  return A_Err_NONE;
}

A_Err RegisterCommandHook(AEGP_PluginID id, AEGP_HookPriority priority, AEGP_Command command, AEGP_CommandHook hook,
                          AEGP_CommandRefcon) {
  g_host->calls.push_back("RegisterCommandHook " + std::to_string(id) + " " + std::to_string(priority) + " " +
                          std::to_string(command));
  g_host->commandHook = hook;
  return g_host->registerHookErr;
}
A_Err RegisterUpdateMenuHook(AEGP_PluginID id, AEGP_UpdateMenuHook hook, AEGP_UpdateMenuRefcon) {
  g_host->calls.push_back("RegisterUpdateMenuHook " + std::to_string(id));
  g_host->updateMenuHook = hook;
  return A_Err_NONE;
}
A_Err RegisterDeathHook(AEGP_PluginID id, AEGP_DeathHook hook, AEGP_DeathRefcon) {
  g_host->calls.push_back("RegisterDeathHook " + std::to_string(id));
  g_host->deathHook = hook;
  return A_Err_NONE;
}

A_Err RegisterImportFlavor(const A_char* name, AE_FIM_ImportFlavorRef* flavor) {
  g_host->calls.push_back(std::string("RegisterImportFlavor ") + name);
  *flavor = 5;
  return A_Err_NONE;
}
A_Err RegisterImportFlavorImportCallbacks(AE_FIM_ImportFlavorRef flavor, A_long flags,
                                          const AE_FIM_ImportCallbacks* callbacks) {
  g_host->calls.push_back("RegisterImportFlavorImportCallbacks " + std::to_string(flavor) + " " +
                          std::to_string(flags) + (callbacks->import_cb && callbacks->verify_cb ? " both" : " missing"));
  return A_Err_NONE;
}
A_Err RegisterImportFlavorFileTypes(AE_FIM_ImportFlavorRef flavor, A_long kinds, const AEIO_FileKind* kind,
                                    A_long extensions, const AEIO_FileExtension* extension) {
  g_host->calls.push_back("RegisterImportFlavorFileTypes " + std::to_string(flavor) + " " + std::to_string(kinds) +
                          " " + std::to_string(extensions));
  const auto* bytes = reinterpret_cast<const unsigned char*>(kind);
  g_host->fileKindBytes.assign(bytes, bytes + sizeof(AEIO_FileKind));
  g_host->extension.assign(extension->dot_extension, sizeof extension->dot_extension);
  return A_Err_NONE;
}

// The active item is the fake's one handle of each kind.
AEGP_ItemH TheItem() { return reinterpret_cast<AEGP_ItemH>(g_host); }

A_Err GetActiveItem(AEGP_ItemH* item) {
  *item = g_host->hasActiveItem ? TheItem() : nullptr;
  return A_Err_NONE;
}
A_Err GetItemType(AEGP_ItemH, AEGP_ItemType* type) {
  *type = g_host->activeItemType;
  return A_Err_NONE;
}
A_Err GetCompFromItem(AEGP_ItemH, AEGP_CompH* comp) {
  *comp = g_host->activeItemType == AEGP_ItemType_COMP ? reinterpret_cast<AEGP_CompH>(g_host) : nullptr;
  return A_Err_NONE;
}

AEGP_UtilitySuite13 MakeUtility() {
  AEGP_UtilitySuite13 suite{};
  suite.AEGP_ReportInfoUnicode = &ReportInfoUnicode;
  suite.AEGP_RegisterWithAEGP = &RegisterWithAEGP;
  suite.AEGP_GetPluginPaths = &GetPluginPaths;
  suite.AEGP_ExecuteScript = &ExecuteScript;
  return suite;
}

AEGP_MemorySuite1 MakeMemory() {
  AEGP_MemorySuite1 suite{};
  suite.AEGP_FreeMemHandle = &FreeHandle;
  suite.AEGP_LockMemHandle = &LockHandle;
  suite.AEGP_UnlockMemHandle = &UnlockHandle;
  suite.AEGP_GetMemHandleSize = &HandleSize;
  return suite;
}

AEGP_CommandSuite1 MakeCommand() {
  AEGP_CommandSuite1 suite{};
  suite.AEGP_GetUniqueCommand = &GetUniqueCommand;
  suite.AEGP_InsertMenuCommand = &InsertMenuCommand;
  suite.AEGP_EnableCommand = &EnableCommand;
  suite.AEGP_DisableCommand = &DisableCommand;
  return suite;
}

AEGP_RegisterSuite7 MakeRegister() { return {&RegisterCommandHook, &RegisterUpdateMenuHook, &RegisterDeathHook}; }

AEGP_FileImportManagerSuite3 MakeImport() {
  AEGP_FileImportManagerSuite3 suite{};
  suite.AEGP_RegisterImportFlavor = &RegisterImportFlavor;
  suite.AEGP_RegisterImportFlavorFileTypes = &RegisterImportFlavorFileTypes;
  suite.AEGP_RegisterImportFlavorImportCallbacks = &RegisterImportFlavorImportCallbacks;
  return suite;
}

AEGP_ItemSuite13 MakeItem() {
  AEGP_ItemSuite13 suite{};
  suite.AEGP_GetActiveItem = &GetActiveItem;
  suite.AEGP_GetItemType = &GetItemType;
  return suite;
}

AEGP_CompSuite19 MakeComp() {
  AEGP_CompSuite19 suite{};
  suite.AEGP_GetCompFromItem = &GetCompFromItem;
  return suite;
}

PFAppSuite7 MakeApp() {
  PFAppSuite7 suite{};
  suite.PF_CreateNewAppProgressDialog = &CreateProgress;
  suite.PF_AppProgressDialogUpdate = &UpdateProgress;
  suite.PF_DisposeAppProgressDialog = &DisposeProgress;
  suite.PF_AppGetLanguage = &GetLanguage;
  return suite;
}

const AEGP_UtilitySuite13 g_utility = MakeUtility();
const PFAppSuite7 g_app = MakeApp();
const AEGP_MemorySuite1 g_memory = MakeMemory();
const AEGP_CommandSuite1 g_command = MakeCommand();
const AEGP_RegisterSuite7 g_register = MakeRegister();
const AEGP_FileImportManagerSuite3 g_import = MakeImport();
const AEGP_ItemSuite13 g_item = MakeItem();
const AEGP_CompSuite19 g_comp = MakeComp();

std::string Key(const char* name, A_long version) { return std::string(name) + "/" + std::to_string(version); }

SPErr Acquire(const char* name, A_long version, const void** suite) {
  *suite = nullptr;
  if (std::strcmp(name, kAEGPUtilitySuite) == 0) *suite = &g_utility;
  if (std::strcmp(name, kPFAppSuite) == 0) *suite = &g_app;
  if (std::strcmp(name, kAEGPMemorySuite) == 0) *suite = &g_memory;
  if (std::strcmp(name, kAEGPCommandSuite) == 0) *suite = &g_command;
  if (std::strcmp(name, kAEGPRegisterSuite) == 0) *suite = &g_register;
  if (std::strcmp(name, kAEGPFileImportManagerSuite) == 0) *suite = &g_import;
  if (std::strcmp(name, kAEGPItemSuite) == 0) *suite = &g_item;
  if (std::strcmp(name, kAEGPCompSuite) == 0) *suite = &g_comp;
  if (!*suite) return A_Err_MISSING_SUITE;
  ++g_host->acquired[Key(name, version)];
  return A_Err_NONE;
}

SPErr Release(const char* name, A_long version) {
  ++g_host->released[Key(name, version)];
  return A_Err_NONE;
}

}  // namespace

FakeHost::FakeHost() : pica_{&Acquire, &Release, nullptr} { g_host = this; }

FakeHost::~FakeHost() { g_host = nullptr; }

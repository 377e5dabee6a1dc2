#include "aehost/core/basic_suite.h"

#include <cstring>
#include <initializer_list>

#include "aehost/core/host.h"
#include "aehost/core/memory_suite.h"
#include "aehost/core/suite_call.h"
#include "aehost/core/suites.h"
#include "aehost/core/text_character_suites.h"

namespace aehost {

namespace {

struct SuiteEntry {
    const char* name;
    std::initializer_list<A_long> versions;
    const void* table;
};

// Every version listed shares the one layout of its suite.
const SuiteEntry kSuites[] = {
    {kAEGPRegisterSuite, {kAEGPRegisterSuiteVersion6, kAEGPRegisterSuiteVersion7}, RegisterSuite()},
    {kAEGPCommandSuite, {kAEGPCommandSuiteVersion1}, CommandSuite()},
    {kAEGPFileImportManagerSuite, {kAEGPFileImportManagerSuiteVersion3}, FileImportManagerSuite()},
    {kAEGPUtilitySuite,
     {kAEGPUtilitySuiteVersion3, kAEGPUtilitySuiteVersion7, kAEGPUtilitySuiteVersion10, kAEGPUtilitySuiteVersion11,
      kAEGPUtilitySuiteVersion13},
     UtilitySuite()},
    {kAEGPMemorySuite, {kAEGPMemorySuiteVersion1}, MemorySuite()},
    {kAEGPPersistentDataSuite, {kAEGPPersistentDataSuiteVersion3, kAEGPPersistentDataSuiteVersion4},
     PersistentDataSuite()},
    {kPFAppSuite, {kPFAppSuiteVersion1, kPFAppSuiteVersion6, kPFAppSuiteVersion7}, AppSuite()},
    {kPFANSISuite, {kPFANSISuiteVersion1}, AnsiSuite()},
    {kAEGPProjSuite, {kAEGPProjSuiteVersion8, kAEGPProjSuiteVersion9}, ProjSuite()},
    {kAEGPItemSuite, {kAEGPItemSuiteVersion13}, ItemSuite()},
    {kAEGPCompSuite, {kAEGPCompSuiteVersion15, kAEGPCompSuiteVersion19, kAEGPCompSuiteVersion21}, CompSuite()},
    {kAEGPFootageSuite, {kAEGPFootageSuiteVersion11}, FootageSuite()},
    {kAEGPLayerSuite, {kAEGPLayerSuiteVersion11, kAEGPLayerSuiteVersion13, kAEGPLayerSuiteVersion14},
     LayerSuite()},
    {kAEGPCameraSuite, {kAEGPCameraSuiteVersion2}, CameraSuite()},
    {kAEGPLightSuite, {kAEGPLightSuiteVersion1, kAEGPLightSuiteVersion2}, LightSuite()},
    {kAEGPStreamSuite, {kAEGPStreamSuiteVersion7, kAEGPStreamSuiteVersion9}, StreamSuite()},
    {kAEGPDynamicStreamSuite,
     {kAEGPDynamicStreamSuiteVersion2, kAEGPDynamicStreamSuiteVersion3, kAEGPDynamicStreamSuiteVersion5},
     DynamicStreamSuite()},
    {kAEGPKeyframeSuite, {kAEGPKeyframeSuiteVersion4}, KeyframeSuite()},
    {kAEGPMarkerSuite, {kAEGPMarkerSuiteVersion2}, MarkerSuite()},
    {kAEGPTextDocumentSuite, {kAEGPTextDocumentSuiteVersion1}, TextDocumentSuite()},
    {kAEGPLayerMaskSuite, {kAEGPLayerMaskSuiteVersion7}, LayerMaskSuite()},
    {kAEGPMaskOutlineSuite, {kAEGPMaskOutlineSuiteVersion3}, MaskOutlineSuite()},
    {kPFPathDataSuite, {kPFPathDataSuiteVersion1}, PathDataSuite()},
    {kAEGPShapeLayerSuite, {kAEGPShapeLayerSuiteVersion2, kAEGPShapeLayerSuiteVersion3}, ShapeLayerSuite()},
    {kAEGPAnimatedShapeSuite, {kAEGPAnimatedShapeSuiteVersion1, kAEGPAnimatedShapeSuiteVersion2}, AnimatedShapeSuite()},
    {kAEGPGuidSuite, {kAEGPGuidSuiteVersion2}, GuidSuite()},
    {kAEGPTextLayerSuite, {kAEGPTextLayerSuiteVersion1, kAEGPTextLayerSuiteVersion2}, TextLayerSuite()},
    {kAEGPTextLayerCharacterSuite, {kAEGPTextLayerCharacterSuiteVersion1}, TextLayerCharacterSuite()},
};

std::string SuiteKey(const char* name, A_long version) { return std::string(name) + " version " + std::to_string(version); }

SPErr AcquireSuite(const char* name, A_long version, const void** suite) {
    return GuardCall("AcquireSuite", [&]() -> A_Err {
        AEHOST_REQUIRE_OUT("AcquireSuite", suite);
        *suite = nullptr;
        if (!name) return Refuse("AcquireSuite", "null suite name");
        const void* table = FindSuite(name, version);
        if (!table) return A_Err_MISSING_SUITE;
        ++g_host.acquiredSuites[SuiteKey(name, version)];
        *suite = table;
        return A_Err_NONE;
    });
}

SPErr ReleaseSuite(const char* name, A_long version) {
    return GuardCall("ReleaseSuite", [&]() -> A_Err {
        if (!name) return Refuse("ReleaseSuite", "null suite name");
        auto it = g_host.acquiredSuites.find(SuiteKey(name, version));
        if (it == g_host.acquiredSuites.end() || it->second == 0)
            return Refuse("ReleaseSuite", "\"" + SuiteKey(name, version) + "\" released more often than acquired");
        --it->second;
        return A_Err_NONE;
    });
}

A_Boolean IsEqual(const char* token1, const char* token2) {
    return token1 && token2 && std::strcmp(token1, token2) == 0;
}

SPBasicSuite g_basicSuite = {AcquireSuite, ReleaseSuite, IsEqual};

}  // namespace

SPBasicSuite* BasicSuite() { return &g_basicSuite; }

const void* FindSuite(const char* name, A_long version) {
    for (const SuiteEntry& entry : kSuites) {
        if (std::strcmp(entry.name, name) != 0) continue;
        for (A_long v : entry.versions)
            if (v == version) return entry.table;
    }
    return nullptr;
}

std::vector<std::string> UnreleasedSuites() {
    std::vector<std::string> lines;
    for (const auto& [key, count] : g_host.acquiredSuites)
        if (count > 0) lines.push_back("\"" + key + "\": " + std::to_string(count) + " acquisition(s) not released");
    return lines;
}

}  // namespace aehost

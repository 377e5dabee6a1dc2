#include "plugin/text/builtin_strings.h"

#include <array>

namespace {

struct Record {
  int32_t position;
  BuiltinString value;
};

// The records this plug-in shows. The other places of the table belong to sibling
// modules of the package; they keep their place and id but carry no text here.
constexpr Record kRecords[] = {
    {1, {1, "Quillon - File Could not be read"}},
    {2, {2, "Quillon - Document could not be read"}},
    {3, {3, "Quillon - Document was saved with R11 or older. Please resave with a newer version."}},
    {4, {4, "Quillon - Document cannot be created"}},
    {5, {5, "Quillon - Document could not be opened"}},
    {6, {6, "Quillon - Bitmap could not be created"}},
    {7, {7, "Quillon - Scene could not be created"}},
    {8, {8, "Quillon - Image Error"}},
    {9, {9, "Quillon - Transfer file error"}},
    {10, {10, "Quillon - Thread open error"}},
    {11, {11, "Quillon - Send scene error"}},
    {12, {12, "Quillon - Connection failure"}},
    {13, {13, "Quillon - Invalid Orrery Studio Type"}},
    {14, {14, "Quillon - Connection failure with Multi-Passes"}},
    {15, {15, "Quillon - Connection failure Execute"}},
    {16, {16, "Quillon - Close"}},
    {17, {17, "Quillon - General error"}},
    {18, {18, "Quillon StopThread - Open failed"}},
    {19, {19, "Quillon StopThread - Stop failed"}},
    {20, {20, "Quillon CloseThread - Open failed"}},
    {21, {21, "Quillon CloseThread - Stop failed"}},
    {22, {22, "Quillon CloseThread - Close failed"}},
    {23, {23, "Quillon AliveThread - IP failed"}},
    {24, {24, "Quillon AliveThread - Allocation failed"}},
    {25, {25, "Quillon AliveThread - Execute failed"}},
    {26, {26, "Quillon - Render connect failed"}},
    {27, {27, "Quillon - Render allocation failed"}},
    {28, {28, "Quillon Close - Render allocation failed"}},
    {29, {29, "Quillon Cancel - Render allocation failed"}},
    {30, {30, "Quillon - No Orrery Studio ID was found"}},
    {31, {31, "No Orrery Studio Layers left (limit 99) - please purge or close projects"}},
    {32, {32, "Wrong Bitdepth from AfterEffects"}},
    {34, {34, "Orrery Studio failed to start."}},
    {35, {35, "Orrery Studio started, but SyncBridge did not respond."}},
    {36, {36, "No Orrery Studio Installation was found."}},
    {37, {37, "The current server port is not available."}},
    {38, {38, "You must save the project before exporting."}},
    {39, {39, "You must save the project before merging the camera."}},
    {40, {40, "Only one Quillon effect may applied to each layer."}},
    {41, {41, "Failed to open file : "}},
    {42, {42, "Failed to create InData from file : "}},
    {44, {44, "Failed to save the composition as a ORY file."}},
    {45, {45, "No 3D layers found."}},
    {46, {46, "2D layers found, these will not be exported."}},
    {53, {53, "Import Vantor Orrery Studio file"}},
    {54, {54, "Vantor Orrery Studio Exporter..."}},
    {55, {55, "Orrery Studio Exporter: Problem encountered during file export."}},
    {56, {56, "Orrery Studio Exporter: Problem encountered with streams."}},
    {57, {57, "Orrery Studio Importer: Problem encountered with original File."}},
    {58, {58, "Orrery Studio Importer..."}},
    {59, {59, "Orrery Studio Exporter: Problem encountered during plugin registration."}},
    {125, {126, ""}},
    {126, {125, ""}},
    {127, {127, "To use this function please update to Vantor Orrery Studio version 2024.2 or higher."}},
};

constexpr std::array<BuiltinString, kBuiltinStringCount> MakeTable() {
  std::array<BuiltinString, kBuiltinStringCount> table{};
  for (int32_t i = 0; i < kBuiltinStringCount; ++i) table[i] = {i, ""};
  for (const Record& record : kRecords) table[record.position] = record.value;
  return table;
}

constexpr std::array<BuiltinString, kBuiltinStringCount> kTable = MakeTable();

}  // namespace

const BuiltinString* BuiltinStringAt(int32_t position) {
  if (position < 0 || position >= kBuiltinStringCount) return nullptr;
  return &kTable[position];
}

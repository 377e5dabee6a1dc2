// The host's project: folders, footage (files, sequences, solids) and
// compositions with their layers.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "aehost/model/layer.h"

namespace aehost {

// Numbered like the host's AEGP_ItemType.
enum class ItemKind : int { Folder = 1, Composition = 2, Footage = 4 };

enum class FootageKind { File, Sequence, Solid };

struct Footage {
  FootageKind kind = FootageKind::File;
  std::string path;        // the file, or the first file of a sequence
  int fileCount = 1;       // number of files of a sequence; 1 otherwise
  std::string proxyPath;   // empty: no proxy
  Value color;             // solids: red, green, blue, alpha in 0..1
  bool operator==(const Footage&) const = default;
};

struct Composition {
  double displayStart = 0.0;   // seconds
  double workAreaStart = 0.0;  // seconds, composition time
  double workAreaDuration = 0.0;
  Value background{{0.0, 0.0, 0.0, 1.0}};  // red, green, blue, alpha
  std::vector<Marker> markers;
  std::vector<std::unique_ptr<Layer>> layers;  // top of the timeline first
};

// Folders, footage and compositions share one record; `kind` says which of
// `footage` and `comp` means something.
struct Item {
  int id = 0;                // unique in the project; 0 is the root folder
  ItemKind kind = ItemKind::Folder;
  std::string name;
  int folderId = 0;          // the folder holding this item
  int width = 0;             // pixels; footage and compositions
  int height = 0;
  double pixelAspect = 1.0;
  double duration = 0.0;     // seconds; 0 for stills and solids; compositions up to kMaxCompDuration
  double frameRate = 0.0;    // frames per second, e.g. 30000.0 / 1001.0; 0 for stills and solids
  Footage footage;
  Composition comp;
};

constexpr int kRootFolderId = 0;
// The longest composition the host makes, in seconds: three hours.
constexpr double kMaxCompDuration = 3 * 60 * 60;
// The widest and tallest item, in pixels.
constexpr int kMaxItemSize = 30000;
// The frame rates of a composition.
constexpr double kMinCompFrameRate = 0.01;
constexpr double kMaxCompFrameRate = 1000;
// The host's times are 32-bit counts of 1/100 frame (see CompTimeScale): at the highest frame
// rate a time runs to 21474.8 seconds either way, and every time of a project stays inside a
// whole second of that.
constexpr double kMaxTimeSeconds = 21474;
// Pixel aspect ratios the host offers run from anamorphic to very tall pixels; the suites hand
// them out as a ratio over a million in 32 bits.
constexpr double kMinPixelAspect = 0.01;
constexpr double kMaxPixelAspect = 100.0;
// A layer plays at most a hundred times faster or slower, backwards as well.
constexpr double kMinStretch = 0.01;
constexpr double kMaxStretch = 100.0;
// Item and layer ids run from 1 to this; the host never gives out a higher one.
constexpr int kMaxId = 1 << 30;

// A number never given out before in this run.
std::uint64_t NextLayerSerial();

struct Project {
  std::string path;          // empty: never saved
  // items[0] is the root folder; the rest keeps its order of creation.
  std::vector<std::unique_ptr<Item>> items;
  int nextItemId = 1;
  int nextLayerId = 1;
  // Changes whenever a layer is made (NewLayerId) and differs between any two projects, so
  // that an index of the layers can tell whether it still holds.
  std::uint64_t layerSerial = NextLayerSerial();
};

Project NewProject();  // an empty project with its root folder

// The id of a new item or layer: the one after the highest so far, or once that would pass
// kMaxId, the lowest one not in use, so that a saved project always reads back.
int NewItemId(Project& project);
int NewLayerId(Project& project);

Item* FindItem(const Project& project, int id);
Layer* FindLayer(const Item& comp, int layerId);
// The composition that holds a layer, or null.
Item* FindLayerComp(const Project& project, const Layer& layer);

}  // namespace aehost

#include "aehost/core/progress.h"

#include <iostream>

#include "aehost/core/host.h"

namespace aehost {

namespace {

constexpr int kBarWidth = 30;

bool g_lineOpen = false;  // a line of progress is drawn and not yet ended

void DrawImportCount() {
    const ImportProgress& p = g_host.importing;
    std::cerr << "\rImporting " << p.file << ": " << p.layers << (p.layers == 1 ? " layer, " : " layers, ")
              << p.keyframes << (p.keyframes == 1 ? " keyframe" : " keyframes") << std::flush;
    g_lineOpen = true;
}

bool Importing() { return !g_host.importing.file.empty(); }

}  // namespace

bool ProgressVisible() { return g_host.progressBar && !g_host.quiet && !g_host.verbose; }

void DrawProgressBar(const std::string& title, int percent) {
    const int filled = percent * kBarWidth / 100;
    std::cerr << '\r' << title << " [" << std::string(static_cast<std::size_t>(filled), '#')
              << std::string(static_cast<std::size_t>(kBarWidth - filled), ' ') << "] " << percent << '%'
              << std::flush;
    g_lineOpen = true;
}

void EndProgressLine() {
    if (g_lineOpen) std::cerr << '\n';
    g_lineOpen = false;
}

void BeginImportProgress(const std::string& file) {
    g_host.importing = ImportProgress{};
    g_host.importing.file = file;
    if (ProgressVisible()) DrawImportCount();
}

void CountImportedLayer() {
    if (!Importing()) return;
    ++g_host.importing.layers;
    if (ProgressVisible()) DrawImportCount();
}

void CountImportedKeyframes(long long count) {
    if (!Importing() || count == 0) return;
    g_host.importing.keyframes += count;
    if (ProgressVisible()) DrawImportCount();
}

void EndImportProgress() {
    EndProgressLine();
    g_host.importing = ImportProgress{};
}

}  // namespace aehost

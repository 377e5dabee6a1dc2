#include "aehost/core/exit_report.h"

#include "aehost/core/basic_suite.h"
#include "aehost/core/host.h"
#include "aehost/core/memory_suite.h"

namespace aehost {

std::vector<std::string> ExitProblems() {
    std::vector<std::string> lines = MemoryLeaks();
    for (const std::string& line : UnreleasedSuites()) lines.push_back("suite " + line);
    if (const auto n = g_host.streams.Entries().size())
        lines.push_back(std::to_string(n) + " stream handle(s) never disposed");
    if (const auto n = g_host.textDocuments.Entries().size())
        lines.push_back(std::to_string(n) + " text document value(s) never disposed");
    if (const auto n = g_host.masks.Entries().size())
        lines.push_back(std::to_string(n) + " mask handle(s) never disposed");
    if (const auto n = g_host.outlines.Entries().size())
        lines.push_back(std::to_string(n) + " mask outline value(s) never disposed");
    if (const auto n = g_host.shapes.Entries().size())
        lines.push_back(std::to_string(n) + " shape(s) never disposed");
    if (const auto n = g_host.shapeOutlines.Entries().size())
        lines.push_back(std::to_string(n) + " shape item outline list(s) never disposed");
    if (const auto n = g_host.shapeIdentities.Entries().size())
        lines.push_back(std::to_string(n) + " shape identity(ies) never disposed");
    if (const auto n = g_host.textCharacters.Entries().size())
        lines.push_back(std::to_string(n) + " text character(s) never disposed");
    if (const auto n = g_host.keyBatches.Entries().size())
        lines.push_back(std::to_string(n) + " keyframe batch(es) never ended");
    if (const auto n = g_host.progress.Entries().size())
        lines.push_back(std::to_string(n) + " progress dialog(s) never disposed");
    if (!g_host.undoStack.empty())
        lines.push_back(std::to_string(g_host.undoStack.size()) + " undo group(s) never ended");
    for (const std::string& line : g_host.misuse) lines.push_back("refused call " + line);
    return lines;
}

}  // namespace aehost

#include "aehost/core/trace.h"

#include <iomanip>
#include <iostream>
#include <sstream>

#include "aehost/core/host.h"

namespace aehost {

bool Tracing() { return g_host.verbose; }

void Trace(const std::string& step) {
    if (g_host.verbose) std::cerr << "trace: " << step << '\n';
}

std::string Quoted(const std::string& name) { return '"' + name + '"'; }

std::string ShortNumber(double value) {
    std::ostringstream text;
    text << std::setprecision(6) << value;
    return text.str();
}

std::string ShownLayerName(const Project& project, const Layer& layer) {
    if (!layer.name.empty() || !layer.sourceId) return layer.name;
    const Item* source = FindItem(project, layer.sourceId);
    return source ? source->name : layer.name;
}

std::string FirstLine(const std::string& text) {
    constexpr std::size_t kMaxLength = 80;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::size_t first = text.find_first_not_of(" \t\r", start);
        if (first < end) {
            std::size_t last = end;
            while (last > first && (text[last - 1] == ' ' || text[last - 1] == '\r' || text[last - 1] == '\t')) --last;
            const std::string line = text.substr(first, last - first);
            return line.size() > kMaxLength ? line.substr(0, kMaxLength) + "..." : line;
        }
        start = end + 1;
    }
    return std::string();
}

}  // namespace aehost

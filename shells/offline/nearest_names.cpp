#include "nearest_names.h"

#include <algorithm>
#include <numeric>

#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

constexpr size_t kLongestName = 127; // as names of parameters are; a longer text is cut for the comparison

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool BeginsWith(std::string_view name, std::string_view start) {
    return name.size() >= start.size() && EditDistance(name.substr(0, start.size()), start) == 0;
}

struct sCANDIDATE {
    size_t distance;
    const std::string* name;
};

} // namespace

size_t EditDistance(std::string_view from, std::string_view to) {
    std::vector<size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < from.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < to.size(); ++j) {
            const size_t replaced = diagonal + (LowerCase(from[i]) == LowerCase(to[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

std::vector<std::string> NearestNames(const std::vector<std::string>& names, std::string_view wanted,
                                      size_t limit) {
    wanted = wanted.substr(0, kLongestName);
    std::vector<sCANDIDATE> candidates;
    for (const std::string& name : names) {
        const size_t distance = EditDistance(name, wanted);
        const bool isStart = !wanted.empty() && BeginsWith(name, wanted);
        if (isStart || distance * 2 <= std::max(name.size(), wanted.size()))
            candidates.push_back({isStart ? 0 : distance, &name});
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const sCANDIDATE& a, const sCANDIDATE& b) { return a.distance < b.distance; });
    std::vector<std::string> nearest;
    for (size_t i = 0; i < std::min(limit, candidates.size()); ++i)
        nearest.push_back(*candidates[i].name);
    return nearest;
}

std::string NearestText(const std::vector<std::string>& names, std::string_view wanted, const char* otherwise) {
    std::vector<std::string> nearest = NearestNames(names, wanted);
    for (std::string& near : nearest)
        near = Quoted(near);
    return nearest.empty() ? otherwise : std::string("; nearest: ").append(JoinedText(nearest, ", "));
}

} // namespace kvKorvoV12_9_0_320::kvHost

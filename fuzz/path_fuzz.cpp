// Any two texts as paths: the parts make up the whole, and every way from one to the other leads there.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/well_known_folders.h>

namespace {

using namespace kvKorvo;
using FM::KCStPath;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

bool IsLong(const KCStPath& path) { return path.GetPathString().size() > 200; }

void RequirePartsMakeTheWhole(const KCStPath& path) {
    std::vector<KCFixedString<255>> parts;
    Require(path.SplitPath(parts) == kErr_NoErr && !parts.empty());
    Require(path.GetStringFromPathToLevel(static_cast<unsigned>(parts.size())) == path.GetPathString());
    KCStPath joined(parts.front());
    for (size_t i = 1; i < parts.size(); ++i)
        Require(joined.Append(parts[i].c_str()) == kErr_NoErr);
    Require(IsLong(path) || joined == path);
    KCFixedString<255> leaf = path.GetBase();
    const KCFixedString<255> extension = path.GetExtension();
    if (!extension.empty())
        (leaf << '.').append(extension.c_str());
    Require(IsLong(path) || path.GetLeaf() == leaf || path.GetLeaf() == KCFixedString<255>(leaf, "."));
    KCStPath up = path.GetParent();
    for (size_t steps = 0; up; up = up.GetParent())
        Require(++steps < parts.size());
}

void RequireWayLeads(const KCStPath& from, const KCStPath& to) {
    KCFixedString<1023> way;
    const int32_t result = FM::GetRelativeDifference(from, to, way);
    Require((result == kErr_NoErr) == !way.empty());
    if (result != kErr_NoErr || IsLong(from) || IsLong(to))
        return;
    Require(from == to ? way == "." : true);
    KCStPath there(from);
    Require(there.Append(way.c_str()) == kErr_NoErr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string all(reinterpret_cast<const char*>(data), size);
    const size_t middle = std::min(all.find('\n'), all.size());
    const KCStPath one(all.substr(0, middle).c_str());
    const KCStPath two(all.substr(std::min(middle + 1, all.size())).c_str());
    for (const KCStPath& path : {one, two}) {
        if (path)
            RequirePartsMakeTheWhole(path);
    }
    if (one && two) {
        RequireWayLeads(one, two);
        KCStPath both(one);
        Require(both.Append(two.GetPathString().c_str()) == kErr_NoErr);
        RequirePartsMakeTheWhole(both);
    }
    Require((one == two) == (two == one));
    KCFixedString<1023> text;
    static_cast<void>(FM::NormalizePathString(all.c_str(), text));
    static_cast<void>(FM::IsValidIndicator(all.c_str()));
    return 0;
}

#include "session_kinds_internal.h"

#include <algorithm>

#include "nearest_names.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

bool Contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::vector<std::string> KeysOf(const sSESSION_KINDS& kinds, const sSESSION_KIND& kind) {
    std::vector<std::string> keys = kinds.sharedKeys;
    keys.emplace_back(kind.key);
    keys.insert(keys.end(), kind.otherKeys.begin(), kind.otherKeys.end());
    return keys;
}

void RefuseUnknownKeys(const KCEventFields& fields, const sSESSION_KINDS& kinds) {
    std::vector<std::string> known;
    for (const sSESSION_KIND& kind : kinds.kinds)
        for (std::string& key : KeysOf(kinds, kind))
            if (!Contains(known, key))
                known.push_back(std::move(key));
    for (const std::string& key : fields.GetKeys()) {
        if (Contains(known, key))
            continue;
        const std::vector<std::string> nearest = NearestNames(known, key, 1);
        fields.Fail(key, "unknown key " + Quoted(key) +
                             (nearest.empty() ? "; known are " + JoinedText(known, " and ")
                                              : "; did you mean '" + nearest.front() + "'?"));
    }
}

const sSESSION_KIND& FindOnlyKind(const KCEventFields& fields, const sSESSION_KINDS& kinds) {
    const sSESSION_KIND* found = nullptr;
    std::vector<std::string> names;
    for (const sSESSION_KIND& kind : kinds.kinds) {
        names.push_back(InApostrophes(kind.key));
        if (!fields.Has(kind.key))
            continue;
        if (found != nullptr)
            fields.Fail(kind.key, kinds.subject + " does one thing, not both " + InApostrophes(found->key) +
                                      " and " + InApostrophes(kind.key));
        found = &kind;
    }
    if (found == nullptr)
        fields.Fail("", kinds.subject + " says nothing to do: it needs " + (names.size() > 1 ? "one of " : "") +
                            JoinedText(names, " and "));
    return *found;
}

} // namespace

const sSESSION_KIND& FindKind(const KCEventFields& fields, const sSESSION_KINDS& kinds) {
    RefuseUnknownKeys(fields, kinds);
    const sSESSION_KIND& kind = FindOnlyKind(fields, kinds);
    const std::vector<std::string> keys = KeysOf(kinds, kind);
    for (const std::string& key : fields.GetKeys())
        if (!Contains(keys, key))
            fields.Fail(key, InApostrophes(key) + " does not belong to a " + InApostrophes(kind.key) +
                                 " event, which takes " + JoinedText(keys, " and "));
    return kind;
}

} // namespace kvKorvoV12_9_0_320::kvHost

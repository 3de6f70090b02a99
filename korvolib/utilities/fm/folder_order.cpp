// The order file: which item comes first.

#include <algorithm>
#include <istream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include <korvolib/utilities/fm/folder.h>
#include <korvolib/utilities/fm/folder_internal.h>
#include <korvolib/utilities/fm/open_file.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

constexpr const char* kOrderFileName = ".korvo_order";
constexpr size_t kLargestOrderFile = size_t{1} << 20;

std::string_view WithoutBlanks(std::string_view line) {
    constexpr const char* kBlanks = " \t\r\n\v\f";
    const size_t begin = line.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos)
        return {};
    return line.substr(begin, line.find_last_not_of(kBlanks) - begin + 1);
}

// The names in the text, each where it stands first.
std::vector<std::string_view> NamesIn(std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // some editors begin a file with it
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    std::vector<std::string_view> names;
    std::unordered_set<std::string_view> seen;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        const std::string_view name = WithoutBlanks(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        const bool canBeAName = name.find('\0') == name.npos; // else it would be cut to another's name
        if (!name.empty() && name.front() != '#' && canBeAName && seen.insert(name).second)
            names.push_back(name);
    }
    return names;
}

int32_t ReadOrderText(const KCStPath& folder, std::string& text) {
    const KCStPath file(folder, kOrderFileName);
    if (file.GetFileSize() > kLargestOrderFile)
        return kErr_LimitExceeded;
    return ReadTheWholeFile(file, text);
}

int32_t AcceptedNames(const KCStPath& folder, std::string_view text, std::vector<KCFixedString<255>>& names,
                      const FileFilterFunctor& filter) {
    for (const std::string_view name : NamesIn(text)) {
        const KCStPath item(folder, std::string(name).c_str());
        if (!item)
            return kErr_AllocationFailed;
        if (filter(item))
            names.emplace_back(name.data(), name.size());
    }
    return kErr_NoErr;
}

int32_t ReadUpTo(std::istream& stream, size_t most, std::string& text) {
    if (!stream)
        return kErr_Generic;
    char block[4096];
    do {
        stream.read(block, sizeof block);
        text.append(block, static_cast<size_t>(stream.gcount()));
    } while (stream && text.size() <= most);
    return text.size() > most ? kErr_LimitExceeded : stream.bad() ? kErr_Generic : kErr_NoErr;
}

template <class Body>
int32_t NamesOrNone(std::vector<KCFixedString<255>>& names, Body body) noexcept {
    names.clear();
    const int32_t result = WithoutThrowing(body);
    if (result != kErr_NoErr)
        names.clear();
    return result;
}

} // namespace

int32_t KCStFolderIterator::OrderItemsInFolder(std::vector<KCStPath>& items,
                                               const FileFilterFunctor& filter) const noexcept {
    return WithoutThrowing([&] {
        std::string text;
        const int32_t result = ReadOrderText(m_folder, text);
        if (result != kErr_NoErr && result != kErr_FileNotFound)
            return result;
        std::unordered_map<std::string_view, size_t> ranks;
        for (const std::string_view name : NamesIn(text))
            ranks.emplace(name, ranks.size());
        std::erase_if(items, [&](const KCStPath& item) { return !item || !filter(item); });
        const auto rank = [&](const KCStPath& item) {
            const auto found = ranks.find(NameOf(item.GetPathRef()));
            return found == ranks.end() ? ranks.size() : found->second;
        };
        std::sort(items.begin(), items.end(), [&](const KCStPath& left, const KCStPath& right) {
            const size_t ofLeft = rank(left);
            const size_t ofRight = rank(right);
            return ofLeft != ofRight ? ofLeft < ofRight : ComesBeforeByName(left.GetPathRef(), right.GetPathRef());
        });
        return kErr_NoErr;
    });
}

int32_t KCStFolderIterator::ParseSettingsFile(std::vector<KCFixedString<255>>& names,
                                              const FileFilterFunctor& filter) const noexcept {
    return NamesOrNone(names, [&] {
        std::string text;
        const int32_t result = ReadOrderText(m_folder, text);
        return result != kErr_NoErr ? result : AcceptedNames(m_folder, text, names, filter);
    });
}

int32_t KCStFolderIterator::ReadItemOrderFromIstream(std::istream& stream, std::vector<KCFixedString<255>>& names,
                                                     const FileFilterFunctor& filter) const noexcept {
    return NamesOrNone(names, [&] {
        std::string text;
        const int32_t result = ReadUpTo(stream, kLargestOrderFile, text);
        return result != kErr_NoErr ? result : AcceptedNames(m_folder, text, names, filter);
    });
}

} // namespace kvKorvoV12_9_0_320::FM

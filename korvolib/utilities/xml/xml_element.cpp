#include <korvolib/utilities/xml/xml_element.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_text_internal.h>

namespace kvKorvoV12_9_0_320 {

namespace {

int32_t CheckName(const char* name) {
    if (name == nullptr)
        return kErr_NullArgument;
    const std::string_view text(name);
    if (text.size() > kXML_MaxNameLength)
        return kErr_LimitExceeded;
    return IsXMLName(text) ? kErr_NoErr : kErr_MalformedText;
}

int32_t CheckValue(const KUXMLValue& value, size_t maxLength) {
    if (!value.IsValid())
        return kErr_BadDescription;
    if (value.GetText().size() > maxLength)
        return kErr_LimitExceeded;
    return IsXMLText(value.GetText()) ? kErr_NoErr : kErr_MalformedText;
}

// Runs what may take memory. The standard containers it touches are unchanged when that fails.
template <class Change>
int32_t Guarded(Change change) noexcept {
    try {
        change();
        return kErr_NoErr;
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
}

} // namespace

KCXMLElement& KCXMLElement::operator=(KCXMLElement&& other) noexcept {
    // An element that became part of itself would never be destroyed.
    if (&other == this || StandsBelow(other))
        return *this;
    KCXMLElement taken(std::move(other));
    SwapContent(taken);
    return *this;
}

// ---- the tree
// -------------------------------------------------------------------------------------------------------

void KCXMLElement::SwapContent(KCXMLElement& other) noexcept {
    m_name.swap(other.m_name);
    m_text.swap(other.m_text);
    m_attributes.swap(other.m_attributes);
    std::swap(m_firstChild, other.m_firstChild);
    std::swap(m_lastChild, other.m_lastChild);
    std::swap(m_childCount, other.m_childCount);
    std::swap(m_line, other.m_line);
    AdoptChildren();
    other.AdoptChildren();
}

void KCXMLElement::AdoptChildren() noexcept {
    for (KCXMLElement* child = m_firstChild; child != nullptr; child = child->m_next)
        child->m_parent = this;
}

// Not by recursion: whoever builds a tree may nest it deeper than the stack reaches. Each element's children take
// its place at the front of the list before it goes.
void KCXMLElement::ClearChildren() noexcept {
    KCXMLElement* front = std::exchange(m_firstChild, nullptr);
    m_lastChild = nullptr;
    m_childCount = 0;
    while (front != nullptr) {
        if (front->m_firstChild != nullptr) {
            front->m_lastChild->m_next = front->m_next;
            front->m_next = std::exchange(front->m_firstChild, nullptr);
        }
        const std::unique_ptr<KCXMLElement> gone(std::exchange(front, front->m_next));
    }
}

void KCXMLElement::Clear() noexcept {
    KCXMLElement empty;
    SwapContent(empty);
}

bool KCXMLElement::StandsBelow(const KCXMLElement& other) const noexcept {
    // Most elements that are added are new: nothing stands below them, and the way up can be long.
    const KCXMLElement* above = other.m_firstChild == nullptr ? nullptr : m_parent;
    while (above != nullptr && above != &other)
        above = above->m_parent;
    return above != nullptr;
}

void KCXMLElement::Append(KCXMLElement* child) noexcept {
    child->m_parent = this;
    (m_lastChild == nullptr ? m_firstChild : m_lastChild->m_next) = child;
    m_lastChild = child;
    ++m_childCount;
    // Blanks beside children are layout, wherever they came from: what is written must read back as it was.
    if (m_childCount == 1 && IsXMLBlank(m_text))
        m_text.clear();
}

KCXMLElement* KCXMLElement::AppendNew() {
    auto child = std::make_unique<KCXMLElement>();
    Append(child.get());
    return child.release();
}

void KCXMLElement::CopyOwn(const KCXMLElement& other) {
    m_name = other.m_name;
    m_text = other.m_text;
    m_attributes = other.m_attributes;
    m_line = other.m_line;
}

int32_t KCXMLElement::CopyFrom(const KCXMLElement& other) noexcept {
    return Guarded([&] {
        KCXMLElement copy;
        copy.CopyOwn(other);
        const KCXMLElement* from = &other;
        KCXMLElement* to = &copy;
        for (;;) {
            if (from->m_firstChild != nullptr) {
                from = from->m_firstChild;
            } else {
                while (from != &other && from->m_next == nullptr) {
                    from = from->m_parent;
                    to = to->m_parent;
                }
                if (from == &other)
                    break;
                from = from->m_next;
                to = to->m_parent;
            }
            to = to->AppendNew();
            to->CopyOwn(*from);
        }
        SwapContent(copy);
    });
}

bool KCXMLElement::HasSameOwn(const KCXMLElement& other) const noexcept {
    return m_childCount == other.m_childCount && m_name == other.m_name && m_text == other.m_text &&
           m_attributes == other.m_attributes;
}

// As every pair has as many children, walking one tree walks the other.
bool operator==(const KCXMLElement& left, const KCXMLElement& right) noexcept {
    const KCXMLElement* a = &left;
    const KCXMLElement* b = &right;
    while (a->HasSameOwn(*b)) {
        if (a->m_firstChild != nullptr) {
            a = a->m_firstChild;
            b = b->m_firstChild;
            continue;
        }
        while (a != &left && a->m_next == nullptr) {
            a = a->m_parent;
            b = b->m_parent;
        }
        if (a == &left)
            return true;
        a = a->m_next;
        b = b->m_next;
    }
    return false;
}

// ---- reading
// --------------------------------------------------------------------------------------------------------

bool KCXMLElement::IsEmpty() const noexcept {
    return m_name.empty() && m_text.empty() && m_attributes.empty() && m_firstChild == nullptr;
}

const char* KCXMLElement::GetAttributeName(size_t index) const noexcept {
    return index < m_attributes.size() ? m_attributes[index].name.c_str() : "";
}

const char* KCXMLElement::GetAttributeValue(size_t index) const noexcept {
    return index < m_attributes.size() ? m_attributes[index].value.c_str() : "";
}

const char* KCXMLElement::GetAttribute(const char* name, const char* missing) const noexcept {
    if (name == nullptr)
        return missing;
    const auto found = std::ranges::find(m_attributes, name, &Attribute::name);
    return found == m_attributes.end() ? missing : found->value.c_str();
}

KCXMLElement* KCXMLElement::FirstOfName(KCXMLElement* from, const char* name) noexcept {
    while (from != nullptr && !from->HasName(name))
        from = from->m_next;
    return from;
}

const KCXMLElement* KCXMLElement::FindChild(const char* name) const noexcept {
    return FirstOfName(m_firstChild, name);
}
KCXMLElement* KCXMLElement::FindChild(const char* name) noexcept { return FirstOfName(m_firstChild, name); }
const KCXMLElement* KCXMLElement::FindNextSibling(const char* name) const noexcept {
    return FirstOfName(m_next, name);
}
KCXMLElement* KCXMLElement::FindNextSibling(const char* name) noexcept { return FirstOfName(m_next, name); }

// ---- building
// -------------------------------------------------------------------------------------------------------

int32_t KCXMLElement::SetName(const char* name) noexcept {
    if (const int32_t error = CheckName(name); error != kErr_NoErr)
        return error;
    return Guarded([&] { m_name = std::string(name); });
}

int32_t KCXMLElement::SetText(const KUXMLValue& value) noexcept {
    if (const int32_t error = CheckValue(value, kXML_MaxBytes); error != kErr_NoErr)
        return error;
    const bool isLayout = m_firstChild != nullptr && IsXMLBlank(value.GetText());
    return Guarded([&] { m_text = std::string(isLayout ? std::string_view() : value.GetText()); });
}

int32_t KCXMLElement::SetAttribute(const char* name, const KUXMLValue& value) noexcept {
    if (const int32_t error = CheckValue(value, kXML_MaxAttributeLength); error != kErr_NoErr)
        return error;
    // A name that was read may be one that we would not make.
    const auto found =
        std::ranges::find(m_attributes, std::string_view(name == nullptr ? "" : name), &Attribute::name);
    if (found != m_attributes.end())
        return Guarded([&] { found->value = std::string(value.GetText()); });
    if (const int32_t error = CheckName(name); error != kErr_NoErr)
        return error;
    if (m_attributes.size() >= kXML_MaxAttributes)
        return kErr_LimitExceeded;
    return Guarded([&] { m_attributes.push_back({name, std::string(value.GetText())}); });
}

bool KCXMLElement::RemoveAttribute(const char* name) noexcept {
    return name != nullptr &&
           std::erase_if(m_attributes, [&](const Attribute& one) { return one.name == name; }) > 0;
}

KCXMLElement* KCXMLElement::AddChild(const char* name) noexcept {
    KCXMLElement child;
    return child.SetName(name) == kErr_NoErr ? AddChild(std::move(child)) : nullptr;
}

KCXMLElement* KCXMLElement::AddChild(const char* name, const KUXMLValue& text) noexcept {
    KCXMLElement child;
    const bool isMade = child.SetName(name) == kErr_NoErr && child.SetText(text) == kErr_NoErr;
    return isMade ? AddChild(std::move(child)) : nullptr;
}

KCXMLElement* KCXMLElement::AddChild(KCXMLElement&& child) noexcept {
    if (child.m_name.empty() || &child == this || StandsBelow(child))
        return nullptr;
    auto* const added = new (std::nothrow) KCXMLElement(std::move(child));
    if (added != nullptr)
        Append(added);
    return added;
}

bool KCXMLElement::RemoveChild(const KCXMLElement* child) noexcept {
    KCXMLElement* before = nullptr;
    KCXMLElement* at = m_firstChild;
    while (at != nullptr && at != child)
        before = std::exchange(at, at->m_next);
    if (at == nullptr)
        return false;
    (before == nullptr ? m_firstChild : before->m_next) = at->m_next;
    if (m_lastChild == at)
        m_lastChild = before;
    --m_childCount;
    const std::unique_ptr<KCXMLElement> gone(at);
    return true;
}

} // namespace kvKorvoV12_9_0_320

// KCXMLElement: an element of a small XML tree, which descriptions, presets and settings are read from and written
// to.
//
//   KCXMLElement root;
//   sXML_ERROR error;
//   if (root.Parse(bytes, size, &error) == kErr_NoErr)
//       for (const KCXMLElement& param : root.Children("Param"))
//           if (double minimum = 0; param.ReadChildText("Minimum", minimum) == KEXMLValue::Found) …
//
// An element owns its children, moves with them, and is copied only when asked (CopyFrom). A child stays at its
// address until it is removed or its parent goes, so that a pointer to it holds while siblings come. Comments,
// processing instructions and where exactly text stood among children are not kept. Bytes from outside are hostile:
// document types, entities of their own and everything above the limits below are refused. Nothing throws. Not for
// two threads at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/utilities/mem_obj.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/utilities/xml/xml_value.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

// What is read, and what is written: a tree that passes these when it is written passes them when it is read again.
inline constexpr size_t kXML_MaxBytes = size_t{16} << 20; ///< of the whole text
inline constexpr size_t kXML_MaxDepth = 100;              ///< levels of nesting, the root being the first
inline constexpr size_t kXML_MaxElements = 200000;
inline constexpr size_t kXML_MaxAttributes = 256;        ///< of one element
inline constexpr size_t kXML_MaxNameLength = 255;        ///< bytes in the name of an element or attribute
inline constexpr size_t kXML_MaxAttributeLength = 65535; ///< bytes in the value of an attribute

/// Where and why a text was refused, for the person who wrote it.
struct sXML_ERROR {
    int32_t line = 0;   ///< from 1; 0 when the place is unknown
    int32_t column = 0; ///< from 1, in bytes
    KCFixedString<255> text;
};

class KCXMLElement;

/// The children of an element in their order, or those of one name: what Children returns, for a range-based for.
class KCXMLChildren {
  public:
    class iterator {
      public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = KCXMLElement;
        using difference_type = std::ptrdiff_t;
        using pointer = const KCXMLElement*;
        using reference = const KCXMLElement&;

        iterator() noexcept = default;
        iterator(const KCXMLElement* at, const char* name) noexcept : m_at(at), m_name(name) {}
        reference operator*() const noexcept { return *m_at; }
        pointer operator->() const noexcept { return m_at; }
        iterator& operator++() noexcept;
        iterator operator++(int) noexcept {
            const iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const iterator& left, const iterator& right) noexcept {
            return left.m_at == right.m_at;
        }

      private:
        const KCXMLElement* m_at = nullptr;
        const char* m_name = nullptr;
    };

    KCXMLChildren(const KCXMLElement* first, const char* name) noexcept : m_first(first), m_name(name) {}
    iterator begin() const noexcept { return {m_first, m_name}; }
    iterator end() const noexcept { return {nullptr, m_name}; }

  private:
    const KCXMLElement* m_first;
    const char* m_name;
};

class KORVO_API KCXMLElement {
  public:
    /// Without a name, attributes, text or children: the empty element.
    KCXMLElement() noexcept = default;
    ~KCXMLElement() { ClearChildren(); }
    /// Takes over everything; the other is empty then, and stays where it stands in its tree.
    KCXMLElement(KCXMLElement&& other) noexcept { SwapContent(other); }
    /// The same; nothing happens when this element stands somewhere below the other.
    KCXMLElement& operator=(KCXMLElement&& other) noexcept;
    KCXMLElement(const KCXMLElement&) = delete;
    KCXMLElement& operator=(const KCXMLElement&) = delete;

    /// Becomes a copy of the other with all below it. kErr_AllocationFailed leaves this element as it was.
    [[nodiscard]] int32_t CopyFrom(const KCXMLElement& other) noexcept;
    void Clear() noexcept;

    // Text in and out
    // -----------------------------------------------------------------------------------------------

    /// Becomes the root element of an XML 1.0 text (UTF-8, or what its byte order mark or declaration names of
    /// UTF-16, ISO-8859-1 and US-ASCII). kErr_MalformedText, kErr_LimitExceeded, kErr_AllocationFailed,
    /// kErr_NullArgument leave this element empty, and `error`, if given, says where and why.
    [[nodiscard]] int32_t Parse(const void* bytes, size_t size, sXML_ERROR* error = nullptr) noexcept;

    /// Writes the element and all below it as a whole XML text in UTF-8, indented by two spaces a level. Parsing it
    /// gives a tree equal to this one. kErr_LimitExceeded, kErr_AllocationFailed, and kErr_BadDescription when an
    /// element has no name leave `out` empty.
    [[nodiscard]] int32_t Write(KCStMemObj& out) const noexcept;

    // Reading
    // -------------------------------------------------------------------------------------------------------

    bool IsEmpty() const noexcept;
    const char* GetName() const noexcept { return m_name.c_str(); }
    bool HasName(const char* name) const noexcept { return name != nullptr && m_name == name; }
    /// The line of the start tag, from 1; 0 for an element that was not read from a text.
    int32_t GetLine() const noexcept { return m_line; }

    /// The characters that stand directly in the element, without those in its children. If it has children, runs
    /// of nothing but blanks between them count as layout and are left out.
    const char* GetText() const noexcept { return m_text.c_str(); }
    size_t GetTextLength() const noexcept { return m_text.size(); }
    template <class Value>
    [[nodiscard]] KEXMLValue ReadText(Value& value) const noexcept {
        return ReadXMLValue(GetText(), value);
    }

    size_t GetAttributeCount() const noexcept { return m_attributes.size(); }
    /// In the order of the text; "" for an unknown index.
    const char* GetAttributeName(size_t index) const noexcept;
    const char* GetAttributeValue(size_t index) const noexcept;
    /// `missing` if there is no attribute of that name.
    const char* GetAttribute(const char* name, const char* missing = nullptr) const noexcept;
    bool HasAttribute(const char* name) const noexcept { return GetAttribute(name) != nullptr; }
    /// As ReadXMLValue of the attribute's value: double, whole numbers, bool, fixed strings.
    template <class Value>
    [[nodiscard]] KEXMLValue ReadAttribute(const char* name, Value& value) const noexcept {
        return ReadXMLValue(GetAttribute(name), value);
    }

    size_t GetChildCount() const noexcept { return m_childCount; }
    /// The first child, or the first of that name; null if there is none.
    const KCXMLElement* GetFirstChild() const noexcept { return m_firstChild; }
    KCXMLElement* GetFirstChild() noexcept { return m_firstChild; }
    const KCXMLElement* FindChild(const char* name) const noexcept;
    KCXMLElement* FindChild(const char* name) noexcept;
    /// The next child of the same parent, or the next of that name; null behind the last.
    const KCXMLElement* GetNextSibling() const noexcept { return m_next; }
    KCXMLElement* GetNextSibling() noexcept { return m_next; }
    const KCXMLElement* FindNextSibling(const char* name) const noexcept;
    KCXMLElement* FindNextSibling(const char* name) noexcept;
    /// All children in order.
    KCXMLChildren Children() const noexcept { return {m_firstChild, nullptr}; }
    /// Those of one name, which must live as long as the loop; none for null.
    KCXMLChildren Children(const char* name) const noexcept { return {FindChild(name), name}; }
    /// As ReadText of the first child of that name.
    template <class Value>
    [[nodiscard]] KEXMLValue ReadChildText(const char* name, Value& value) const noexcept {
        const KCXMLElement* const child = FindChild(name);
        return child == nullptr ? KEXMLValue::Missing : child->ReadText(value);
    }

    // Building
    // ------------------------------------------------------------------------------------------------------
    //
    // Names of our own making are ASCII: a letter or '_', then letters, digits and "_-.:". A text is valid UTF-8 of
    // characters that XML allows (of the control characters only tab, line feed and carriage return). Anything else
    // is refused with kErr_MalformedText, too long names and values with kErr_LimitExceeded, a null name with
    // kErr_NullArgument, a double that is not finite with kErr_BadDescription; then nothing has changed.

    [[nodiscard]] int32_t SetName(const char* name) noexcept;
    /// Replaces the text. Nothing but blanks becomes no text in an element with children: see GetText.
    [[nodiscard]] int32_t SetText(const KUXMLValue& value) noexcept;
    /// Sets an attribute in its place, or adds it behind the others.
    [[nodiscard]] int32_t SetAttribute(const char* name, const KUXMLValue& value) noexcept;
    bool RemoveAttribute(const char* name) noexcept;

    /// Adds an element behind the other children; null when it is refused (see above) or memory is short.
    KCXMLElement* AddChild(const char* name) noexcept;
    KCXMLElement* AddChild(const char* name, const KUXMLValue& text) noexcept;
    /// Takes the child over, with all below it. Null, and nothing changes, when it has no name, when memory is
    /// short, and when this element is the child or stands below it.
    KCXMLElement* AddChild(KCXMLElement&& child) noexcept;
    /// Destroys a child of this element. False for any other pointer, which is not followed.
    bool RemoveChild(const KCXMLElement* child) noexcept;

    /// Names, texts, attributes and children are the same in the same order; lines do not count.
    friend KORVO_API bool operator==(const KCXMLElement& left, const KCXMLElement& right) noexcept;

  private:
    friend class KCXMLTreeBuilder;
    friend class KCXMLWriter;

    struct Attribute {
        std::string name;
        std::string value;
        friend bool operator==(const Attribute&, const Attribute&) = default;
    };

    void SwapContent(KCXMLElement& other) noexcept;
    void AdoptChildren() noexcept;
    void ClearChildren() noexcept;
    bool StandsBelow(const KCXMLElement& other) const noexcept;
    void CopyOwn(const KCXMLElement& other);
    bool HasSameOwn(const KCXMLElement& other) const noexcept;
    void Append(KCXMLElement* child) noexcept;
    KCXMLElement* AppendNew();
    static KCXMLElement* FirstOfName(KCXMLElement* from, const char* name) noexcept;

    std::string m_name;
    std::string m_text;
    std::vector<Attribute> m_attributes;
    KCXMLElement* m_firstChild = nullptr; // owned, each by the link before it
    KCXMLElement* m_lastChild = nullptr;
    KCXMLElement* m_next = nullptr;
    KCXMLElement* m_parent = nullptr; // lets trees of any depth be walked without a stack
    size_t m_childCount = 0;
    int32_t m_line = 0;
};

inline KCXMLChildren::iterator& KCXMLChildren::iterator::operator++() noexcept {
    m_at = m_name == nullptr ? m_at->GetNextSibling() : m_at->FindNextSibling(m_name);
    return *this;
}

} // namespace kvKorvoV12_9_0_320

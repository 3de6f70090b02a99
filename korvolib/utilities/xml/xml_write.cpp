#include <korvolib/utilities/xml/xml_element.h>

#include <string_view>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

// Writes a tree front to back. The first failure sticks, and the rest is walked without effect.
class KCXMLWriter {
  public:
    explicit KCXMLWriter(KCStMemObj& out) : m_out(out) {}

    int32_t Write(const KCXMLElement& root) {
        Put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
        const KCXMLElement* element = &root;
        while (element != nullptr && m_code == kErr_NoErr) {
            Open(*element);
            element = element->m_firstChild != nullptr ? element->m_firstChild : CloseUpTo(root, element);
        }
        Put("\n");
        return m_code;
    }

  private:
    // Up from an element without children to the next one to be opened, closing what is finished; null at the end.
    const KCXMLElement* CloseUpTo(const KCXMLElement& root, const KCXMLElement* element) {
        for (;;) {
            Close(*element);
            if (element == &root)
                return nullptr;
            if (element->m_next != nullptr)
                return element->m_next;
            element = element->m_parent;
        }
    }

    void Open(const KCXMLElement& element) {
        Check(element);
        // Right behind a text, a line break would become part of it.
        const bool isBehindText =
            m_depth > 0 && element.m_parent->m_firstChild == &element && !element.m_parent->m_text.empty();
        if (m_depth > 0 && !isBehindText)
            BreakLine(m_depth);
        Put("<");
        Put(element.m_name);
        for (const KCXMLElement::Attribute& attribute : element.m_attributes)
            PutAttribute(attribute);
        Put(IsLeaf(element) ? "/>" : ">");
        PutEscaped(element.m_text, &EscapeInText);
        ++m_depth;
    }

    void Close(const KCXMLElement& element) {
        --m_depth;
        if (IsLeaf(element))
            return;
        if (element.m_firstChild != nullptr)
            BreakLine(m_depth);
        Put("</");
        Put(element.m_name);
        Put(">");
    }

    static bool IsLeaf(const KCXMLElement& element) {
        return element.m_firstChild == nullptr && element.m_text.empty();
    }

    void Check(const KCXMLElement& element) {
        if (element.m_name.empty())
            Fail(kErr_BadDescription);
        if (m_depth >= kXML_MaxDepth || ++m_elements > kXML_MaxElements)
            Fail(kErr_LimitExceeded);
    }

    void PutAttribute(const KCXMLElement::Attribute& attribute) {
        Put(" ");
        Put(attribute.name);
        Put("=\"");
        PutEscaped(attribute.value, &EscapeInAttribute);
        Put("\"");
    }

    using Escape = const char* (*)(char);

    // What a reader would take for markup or, of white space, would turn into something else
    // (XML 1.0, 2.11, 3.3.3).
    static const char* EscapeInText(char character) {
        switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;"; // "]]>" must not stand in a text
        case '\r':
            return "&#13;";
        default:
            return nullptr;
        }
    }

    static const char* EscapeInAttribute(char character) {
        switch (character) {
        case '"':
            return "&quot;";
        case '\t':
            return "&#9;";
        case '\n':
            return "&#10;";
        default:
            return EscapeInText(character);
        }
    }

    void PutEscaped(std::string_view text, Escape escape) {
        size_t written = 0;
        for (size_t at = 0; at < text.size(); ++at) {
            const char* const reference = escape(text[at]);
            if (reference == nullptr)
                continue;
            Put(text.substr(written, at - written));
            Put(reference);
            written = at + 1;
        }
        Put(text.substr(written));
    }

    void BreakLine(size_t depth) {
        Put("\n");
        for (size_t level = 0; level < depth; ++level)
            Put("  ");
    }

    void Put(std::string_view text) {
        if (m_code != kErr_NoErr)
            return;
        if (text.size() > kXML_MaxBytes - m_out.GetSize())
            return Fail(kErr_LimitExceeded);
        if (const int32_t error = m_out.Append(text); error != kErr_NoErr)
            Fail(error);
    }

    void Fail(int32_t code) {
        if (m_code == kErr_NoErr)
            m_code = code;
    }

    KCStMemObj& m_out;
    size_t m_depth = 0; // of the element to be opened next, from 0
    size_t m_elements = 0;
    int32_t m_code = kErr_NoErr;
};

int32_t KCXMLElement::Write(KCStMemObj& out) const noexcept {
    out.Clear();
    const int32_t result = KCXMLWriter(out).Write(*this);
    if (result != kErr_NoErr)
        out.Clear();
    return result;
}

} // namespace kvKorvoV12_9_0_320

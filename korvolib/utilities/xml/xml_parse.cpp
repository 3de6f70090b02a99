#include <korvolib/utilities/xml/xml_element.h>

#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include <expat.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_text_internal.h>

namespace kvKorvoV12_9_0_320 {

// Builds a tree from expat's events. The first thing that is refused stops the parser, and what follows it is
// ignored.
class KCXMLTreeBuilder {
  public:
    explicit KCXMLTreeBuilder(XML_Parser parser) : m_parser(parser) {
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, OnStart, OnEnd);
        XML_SetCharacterDataHandler(parser, OnCharacters);
        XML_SetStartDoctypeDeclHandler(parser, OnDoctype);
    }

    int32_t Parse(const char* bytes, int size) {
        if (XML_Parse(m_parser, bytes, size, XML_TRUE) == XML_STATUS_OK)
            return kErr_NoErr;
        if (m_code == kErr_NoErr)
            TakeErrorOfExpat();
        return m_code;
    }

    KCXMLElement& Root() { return m_root; }

    void Report(sXML_ERROR& error) const {
        error.line = m_line;
        error.column = m_column;
        error.text = m_reason;
    }

  private:
    // No exception may pass through expat, which is C.
    template <class Event>
    static void Handle(void* user, Event event) noexcept {
        auto* const self = static_cast<KCXMLTreeBuilder*>(user);
        if (self->m_code != kErr_NoErr)
            return;
        try {
            event(*self);
        } catch (const std::bad_alloc&) {
            self->Fail(kErr_AllocationFailed, "out of memory");
        }
    }

    static void OnStart(void* user, const char* name, const char** attributes) noexcept {
        Handle(user, [&](KCXMLTreeBuilder& self) { self.Start(name, attributes); });
    }
    static void OnEnd(void* user, const char*) noexcept {
        Handle(user, [](KCXMLTreeBuilder& self) { self.End(); });
    }
    static void OnCharacters(void* user, const char* text, int length) noexcept {
        Handle(user, [&](KCXMLTreeBuilder& self) { self.m_run.append(text, static_cast<size_t>(length)); });
    }
    static void OnDoctype(void* user, const char*, const char*, const char*, int) noexcept {
        Handle(user,
               [](KCXMLTreeBuilder& self) { self.Fail(kErr_MalformedText, "a document type is not accepted"); });
    }

    void Start(const char* name, const char** attributes) {
        if (m_depth >= kXML_MaxDepth)
            return Fail(kErr_LimitExceeded, "elements are nested too deeply");
        if (m_elements >= kXML_MaxElements)
            return Fail(kErr_LimitExceeded, "too many elements");
        KCXMLElement* const element = m_current == nullptr ? &m_root : AppendToCurrent();
        m_current = element;
        ++m_depth;
        ++m_elements;
        if (std::strlen(name) > kXML_MaxNameLength)
            return Fail(kErr_LimitExceeded, "the name of an element is too long");
        element->m_name = name;
        element->m_line = LimitedPosition(XML_GetCurrentLineNumber(m_parser));
        ReadAttributes(*element, attributes);
    }

    KCXMLElement* AppendToCurrent() {
        KeepRun(false);
        return m_current->AppendNew();
    }

    // expat hands over name, value, name, value, …, null.
    void ReadAttributes(KCXMLElement& element, const char** attributes) {
        for (; *attributes != nullptr; attributes += 2) {
            if (element.m_attributes.size() >= kXML_MaxAttributes)
                return Fail(kErr_LimitExceeded, "an element has too many attributes");
            if (std::strlen(attributes[0]) > kXML_MaxNameLength)
                return Fail(kErr_LimitExceeded, "the name of an attribute is too long");
            if (std::strlen(attributes[1]) > kXML_MaxAttributeLength)
                return Fail(kErr_LimitExceeded, "the value of an attribute is too long");
            element.m_attributes.push_back({attributes[0], attributes[1]});
        }
    }

    void End() {
        KeepRun(m_current->m_firstChild == nullptr);
        m_current = m_current->m_parent;
        --m_depth;
    }

    // A run is what stands between two tags. Of nothing but blanks, it is text in an element without children and
    // layout in any other.
    void KeepRun(bool evenIfBlank) {
        if (evenIfBlank || !IsXMLBlank(m_run))
            m_current->m_text += m_run;
        m_run.clear();
    }

    void Fail(int32_t code, const char* reason) noexcept {
        m_code = code;
        m_reason = reason;
        m_line = LimitedPosition(XML_GetCurrentLineNumber(m_parser));
        m_column = LimitedPosition(XML_GetCurrentColumnNumber(m_parser) + 1);
        XML_StopParser(m_parser, XML_FALSE);
    }

    void TakeErrorOfExpat() {
        const XML_Error error = XML_GetErrorCode(m_parser);
        const bool isMemory = error == XML_ERROR_NO_MEMORY;
        const char* const reason = XML_ErrorString(error);
        Fail(isMemory ? kErr_AllocationFailed : kErr_MalformedText, reason == nullptr ? "not well-formed" : reason);
    }

    // The limit on bytes keeps both far below the limit of the type.
    static int32_t LimitedPosition(XML_Size position) { return static_cast<int32_t>(position); }

    XML_Parser m_parser;
    KCXMLElement m_root;
    KCXMLElement* m_current = nullptr; // the innermost open element
    std::string m_run;
    size_t m_depth = 0;
    size_t m_elements = 0;
    int32_t m_code = kErr_NoErr;
    int32_t m_line = 0;
    int32_t m_column = 0;
    const char* m_reason = "";
};

namespace {

int32_t Refuse(int32_t code, const char* reason, sXML_ERROR& error) {
    error.text = reason;
    return code;
}

int32_t ParseInto(KCXMLElement& element, const void* bytes, size_t size, sXML_ERROR& error) noexcept {
    if (bytes == nullptr && size > 0)
        return Refuse(kErr_NullArgument, "no text", error);
    if (size > kXML_MaxBytes)
        return Refuse(kErr_LimitExceeded, "the text is too long", error);
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate(nullptr),
                                                                              XML_ParserFree);
    if (parser == nullptr)
        return Refuse(kErr_AllocationFailed, "out of memory", error);
    KCXMLTreeBuilder builder(parser.get());
    const int32_t result =
        builder.Parse(bytes == nullptr ? "" : static_cast<const char*>(bytes), static_cast<int>(size));
    if (result == kErr_NoErr)
        element = std::move(builder.Root());
    else
        builder.Report(error);
    return result;
}

} // namespace

int32_t KCXMLElement::Parse(const void* bytes, size_t size, sXML_ERROR* error) noexcept {
    // The bytes may be text of this very tree, so it goes only afterwards.
    KCXMLElement parsed;
    sXML_ERROR report;
    const int32_t result = ParseInto(parsed, bytes, size, report);
    SwapContent(parsed);
    if (error != nullptr)
        *error = report;
    return result;
}

} // namespace kvKorvoV12_9_0_320

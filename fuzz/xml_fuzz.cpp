// Any bytes as an XML text: either refused, with an empty tree and a reason, or read, and then what is written of
// the tree reads back as an equal one and is written the same again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

namespace {

using namespace kvKorvo;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

void RequireSameAgain(const KCXMLElement& tree) {
    KCStMemObj written;
    const int32_t result = tree.Write(written);
    // Escapes and indentation make a text longer, so one just below the limit may pass it.
    if (result == kErr_LimitExceeded)
        return;
    Require(result == kErr_NoErr);
    KCXMLElement again;
    Require(again.Parse(written.GetData(), written.GetSize()) == kErr_NoErr);
    Require(again == tree);
    KCStMemObj writtenAgain;
    Require(again.Write(writtenAgain) == kErr_NoErr);
    Require(written == writtenAgain);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    KCXMLElement tree;
    sXML_ERROR error;
    if (tree.Parse(data, size, &error) != kErr_NoErr) {
        Require(tree.IsEmpty() && !error.text.empty());
        return 0;
    }
    RequireSameAgain(tree);
    KCXMLElement copy;
    Require(copy.CopyFrom(tree) == kErr_NoErr && copy == tree);
    return 0;
}

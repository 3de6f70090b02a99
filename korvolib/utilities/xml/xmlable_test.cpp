#include <korvolib/utilities/xml/xmlable.h>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>
#include <tests/support/virtual_slot.h>

namespace {

using namespace kvKorvo;

class Gain : public CXMLable {
  public:
    int32_t ReadFromXML(const KCXMLElement& element) override {
        return element.ReadAttribute("dB", decibel) == KEXMLValue::Malformed ? kErr_BadDescription : kErr_NoErr;
    }
    int32_t WriteToXML(KCXMLElement& element) const override { return element.SetAttribute("dB", decibel); }

    double decibel = 0;
};

TEST(XMLable, ReadsBackThroughItsInterfaceWhatItWrote) {
    Gain written;
    written.decibel = -0.1;
    KCXMLElement element;
    ASSERT_EQ(static_cast<const CXMLable&>(written).WriteToXML(element), kErr_NoErr);
    Gain read;
    ASSERT_EQ(static_cast<CXMLable&>(read).ReadFromXML(element), kErr_NoErr);
    EXPECT_EQ(read.decibel, written.decibel);
}

TEST(XMLable, PassesTheRefusalOn) {
    KCXMLElement element;
    ASSERT_EQ(element.SetAttribute("dB", "loud"), kErr_NoErr);
    Gain read;
    EXPECT_EQ(static_cast<CXMLable&>(read).ReadFromXML(element), kErr_BadDescription);
}

TEST(XMLable, KeepsItsVirtualOperationsInOrder) {
    EXPECT_EQ(kvTest::VirtualSlot(&CXMLable::ReadFromXML), 2);
    EXPECT_EQ(kvTest::VirtualSlot(&CXMLable::WriteToXML), 3);
}

} // namespace

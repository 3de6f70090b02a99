// What the tests of this room share: an algorithm of three parameters, a control that is nothing but its base, and
// descriptions read from text.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvolib/gui/base_control.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>
#include <tests/support/recording_algorithm.h>

namespace kvTest {

// Nothing but KCBaseControl; writes down which parameters it heard of.
class PlainControl : public KCBaseControl {
  public:
    explicit PlainControl(KEControlBinding kind = KEControlBinding::Observer) : KCBaseControl(kind) {}
    PlainControl(const PlainControl&) = default;
    std::unique_ptr<KCBaseControl> Clone() const override { return std::make_unique<PlainControl>(*this); }
    void UpdatePointer(size_t paramIndex) noexcept override {
        lastHeard = paramIndex;
        ++numHeard;
    }
    void SetLeadPosition(size_t position) { m_leadPosition = position; }

    size_t lastHeard = kNoParam;
    size_t numHeard = 0;
};

// 0 "Gain" continuous, 1 "Mode" of five states, 2 "Angle" continuous and round.
inline std::vector<sCONTROL_PARAM> ThreeParams() {
    std::vector<sCONTROL_PARAM> params = {LinearParam("Gain"), ToggleParam("Mode", 5), LinearParam("Angle")};
    params[2].SetFlags(kParamFlag_ContinuousWraps);
    return params;
}

inline KCXMLElement ElementFrom(const std::string& xml) {
    KCXMLElement element;
    EXPECT_EQ(element.Parse(xml.data(), xml.size()), kErr_NoErr) << xml;
    return element;
}

} // namespace kvTest

// A plug-in of three parameters, with a window from the description that it is made with.
#pragma once

#include <korvolib/alg/control_param.h>
#include <shells/plugin_algorithm.h>

#include <cmath>

namespace kvTest {

class KCWindowPlugin : public kvKorvo::KCPluginAlgorithm {
  public:
    explicit KCWindowPlugin(const char* window) { SetDescription("GUIXML", window); }

    void ReceiveBlock(uint32_t, const void* payload, size_t bytes) noexcept override {
        (void)!kvKorvo::ReadBlock(payload, bytes, m_factor);
    }
    void Process(const kvKorvo::sAUDIO_BLOCK& block) noexcept override {
        for (uint32_t channel = 0; channel < block.numChannels; ++channel)
            for (uint32_t frame = 0; frame < block.numFrames; ++frame)
                block.out[channel][frame] = block.in[channel][frame] * m_factor;
    }

  protected:
    int32_t PrepareParameterVecSelf() override {
        kvKorvo::sCONTROL_PARAM gain(kvKorvo::KCFixedString<127>("Gain"));
        gain.SetScaleLin(-50.0, 50.0, 0.1); // a tenth of a decibel a state
        gain.SetUnitsString(kvKorvo::KCFixedString<63>("dB"));
        gain.SetInitialState(500.0);
        gain.SetResetState(500.0);
        AddParam(gain);
        kvKorvo::sCONTROL_PARAM pan(kvKorvo::KCFixedString<127>("Pan"));
        pan.SetScaleLin(-50.0, 50.0, 0.1);
        pan.SetInitialState(500.0);
        AddParam(pan);
        kvKorvo::sCONTROL_PARAM mode(kvKorvo::KCFixedString<127>("Mode"));
        mode.SetScaleToggle(4);
        AddParam(mode);
        return kvKorvo::kErr_NoErr;
    }
    BUFFER_HEADER* ApplyParamSelf(size_t index) override {
        return index == 0 ? MakeBlock(0, static_cast<float>(std::pow(10.0, GetParamRealWorld(index) / 20.0)))
                          : nullptr;
    }

  private:
    float m_factor = 1.0f;
};

} // namespace kvTest

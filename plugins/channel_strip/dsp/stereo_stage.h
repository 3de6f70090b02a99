// Turns the stereo image and trims its sides: [L' R'] = [cos −sin; sin cos]·[L R], then a gain for each. The
// rotation keeps the sum of the channels' energies. A new angle is glided to the shorter way round the circle, so
// that the image never passes through silence. One channel has no image: it gets the left trim alone.
//
// Thread: [audio]; wait-free.
#pragma once

#include <plugins/channel_strip/dsp/channels.h>
#include <plugins/channel_strip/dsp/glide.h>

namespace kvStrip {

struct sSTEREO {
    double angleRadians = 0.0;
    double leftGain = 1.0;
    double rightGain = 1.0;
};

class KCStereoStage {
  public:
    void SetGlideRate(double rate) noexcept;
    void SetTarget(const sSTEREO& target) noexcept;
    void Reset() noexcept;
    void Process(const sCHANNELS& audio) noexcept;

  private:
    void TurnImage(const sCHANNELS& audio) noexcept;
    void SetAngle(double radians) noexcept;

    KCGlide m_angle{0.0};
    double m_cosine = 1.0;
    double m_sine = 0.0;
    KCGlide m_leftGain{1.0};
    KCGlide m_rightGain{1.0};
};

} // namespace kvStrip

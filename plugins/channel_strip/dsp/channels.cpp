#include <plugins/channel_strip/dsp/channels.h>

#include <cmath>

namespace kvStrip {

double DecibelsToGain(double decibels) noexcept { return std::pow(10.0, decibels / 20.0); }

} // namespace kvStrip

#include <korvolib/gui/interfaces.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {
namespace {

// The eight bytes that every PNG file begins with (ISO/IEC 15948, 5.2).
constexpr uint8_t kPNGSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

} // namespace

void KCMouseHover::BeginHover(double timeSeconds) noexcept {
    if (m_isHovering || !std::isfinite(timeSeconds))
        return;
    m_isHovering = true;
    m_sinceSeconds = timeSeconds;
}

double KCMouseHover::GetHoverSeconds(double nowSeconds) const noexcept {
    const double seconds = nowSeconds - m_sinceSeconds;
    return m_isHovering && seconds > 0.0 ? seconds : 0.0;
}

namespace RM {

int32_t KCResContainer::AddImage(int32_t resID, std::span<const uint8_t> png) {
    if (png.data() == nullptr || png.empty())
        return kErr_NullArgument;
    if (png.size() < std::size(kPNGSignature) ||
        !std::ranges::equal(png.first(std::size(kPNGSignature)), kPNGSignature))
        return kErr_MalformedText;
    try {
        m_images[resID].assign(png.begin(), png.end());
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    return kErr_NoErr;
}

std::span<const uint8_t> KCResContainer::GetImagePNG(int32_t resID) noexcept {
    const auto found = m_images.find(resID);
    return found == m_images.end() ? std::span<const uint8_t>() : std::span<const uint8_t>(found->second);
}

} // namespace RM
} // namespace kvKorvoV12_9_0_320

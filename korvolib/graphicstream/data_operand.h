// KCGSDataOperand: the data of a record, waiting in an engine for the command that uses it. A view into the stream,
// or into the memory that a record by pointer names: valid while that lives.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <korvolib/export.h>
#include <korvolib/graphicstream/checksum.h>
#include <korvolib/graphicstream/records.h>
#include <korvolib/utilities/geometry.h>

namespace kvKorvoV12_9_0_320::kvGS {

struct KORVO_API KCGSDataOperand {
    uint32_t dataType = 0;
    uint32_t purpose = 0;
    const uint8_t* bytes = nullptr;
    size_t size = 0; ///< in bytes

    KCGSDataOperand() noexcept = default;
    explicit KCGSDataOperand(const KCGSRecord<SGSDataHere>& record) noexcept;
    /// Empty where pointers are refused.
    KCGSDataOperand(const KCGSRecord<SGSDataPtr>& record, KEGSPointers pointers) noexcept;

    /// Its type can serve its purpose.
    bool IsUsable() const noexcept;
    bool IsPoints() const noexcept { return purpose == kPoint2D || purpose == kPoint3D; }
    bool IsColors() const noexcept { return purpose == kRGBColor || purpose == kRGBAColor; }

    /// Reads `count` points, without their third coordinate. False when count is 0, they are not all there, or not
    /// all numbers.
    [[nodiscard]] bool ReadPoints(size_t count, std::vector<KUPoint<float>>& points) const;
    size_t GetNumColors() const noexcept { return IsColors() ? size / GetColorSize() : 0; }
    /// `index` is below GetNumColors.
    SGSRGBAColor GetColor(size_t index) const noexcept {
        SGSRGBAColor color;
        std::memcpy(static_cast<void*>(&color), bytes + index * GetColorSize(), GetColorSize());
        return color;
    }

  private:
    size_t GetColorSize() const noexcept { return purpose == kRGBColor ? 3 : 4; }
};

} // namespace kvKorvoV12_9_0_320::kvGS

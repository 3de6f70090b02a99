#include <korvolib/graphicstream/data_operand.h>

#include <cmath>

namespace kvKorvoV12_9_0_320::kvGS {

namespace {

template <class Coordinate>
KUPoint<float> LoadPoint(const uint8_t* bytes) noexcept {
    Coordinate point[2];
    std::memcpy(point, bytes, sizeof point);
    return {static_cast<float>(point[0]), static_cast<float>(point[1])};
}

} // namespace

KCGSDataOperand::KCGSDataOperand(const KCGSRecord<SGSDataHere>& record) noexcept {
    const SGSDataHere data = record.Read();
    dataType = data.dataType;
    purpose = data.purpose;
    bytes = record.GetTail().data();
    size = record.GetTail().size();
}

KCGSDataOperand::KCGSDataOperand(const KCGSRecord<SGSDataPtr>& record, KEGSPointers pointers) noexcept {
    if (pointers == kRefusePointers)
        return;
    const SGSDataPtr data = record.Read();
    dataType = data.dataType;
    purpose = data.purpose;
    bytes = static_cast<const uint8_t*>(data.GetAddress());
    size = data.GetDataSize();
}

bool KCGSDataOperand::IsUsable() const noexcept {
    return bytes != nullptr && DataTypeToPurposeMatch(static_cast<int>(dataType), static_cast<int>(purpose));
}

bool KCGSDataOperand::ReadPoints(size_t count, std::vector<KUPoint<float>>& points) const {
    const bool isShort = dataType == kInt16;
    const size_t pointSize = (purpose == kPoint3D ? 3 : 2) * (isShort ? sizeof(int16_t) : sizeof(float));
    points.clear();
    if (!IsPoints() || count == 0 || count > size / pointSize)
        return false;
    points.resize(count);
    bool numbers = true;
    for (size_t i = 0; i < count; ++i) {
        const uint8_t* const at = bytes + i * pointSize;
        points[i] = isShort ? LoadPoint<int16_t>(at) : LoadPoint<float>(at);
        numbers = numbers && std::isfinite(points[i].x) && std::isfinite(points[i].y);
    }
    return numbers;
}

} // namespace kvKorvoV12_9_0_320::kvGS

// A session file's text becomes events in the order of their times, or a complaint that names the file; nothing
// else.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <shells/offline/failure.h>
#include <shells/offline/session.h>

using namespace kvKorvoV12_9_0_320::kvHost;

namespace {

bool IsInOrder(const sSESSION& session) {
    double last = 0.0;
    for (const sSESSION_EVENT& event : session.events) {
        if (!(event.atSeconds >= last && event.atSeconds <= kLongestSession) || event.line < 1)
            return false;
        last = event.atSeconds;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        const sSESSION session = ReadSession({reinterpret_cast<const char*>(data), size}, "fuzz.yaml");
        if (!IsInOrder(session))
            std::abort();
        for (const sSESSION_EVENT& event : session.events)
            if (DescribeAction(event.action).empty())
                std::abort();
    } catch (const KCHostFailure& failure) {
        if (!std::string_view(failure.what()).starts_with("fuzz.yaml:"))
            std::abort();
    }
    return 0;
}

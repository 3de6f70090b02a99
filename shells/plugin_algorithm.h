// What most plug-ins derive from: algorithm and processing in one class, with the parts of both that are the same
// everywhere. A plug-in then supplies
//   - its parameters: PrepareParameterVecSelf, or a description,
//   - ApplyParamSelf: what a parameter's new value means, as a block (MakeBlock),
//   - ReceiveBlock and Process, on the audio side.
// Where one block needs several parameters, override ApplyAlgSelf as well, so that it is not sent once for each.
#pragma once

#include <korvolib/alg/algorithm.h>
#include <korvolib/control/automation_manager.h>
#include <korvolib/utilities/error_codes.h>
#include <shells/plugin.h>

namespace kvKorvoV12_9_0_320 {

class KCPluginAlgorithm : public cALGORITHM, public KCPlugin {
  public:
    cALGORITHM& GetAlgorithm() noexcept override { return *this; }
    [[nodiscard]] int32_t Prepare(const sPROCESS_SETUP&) override { return kErr_NoErr; }
    void Reset() noexcept override {}

  protected:
    /// A block with `contents` for one target, or null when none is to be had (see cALGORITHM::TakeBuffer).
    template <class Contents>
    BUFFER_HEADER* MakeBlock(uint32_t target, const Contents& contents) {
        static_assert(std::is_trivially_copyable_v<Contents>);
        BUFFER_HEADER* const block = TakeBuffer(target, sizeof contents);
        if (block != nullptr)
            std::memcpy(block->Payload(), &contents, sizeof contents);
        return block;
    }

    /// Every parameter's block.
    BUFFER_HEADER* ApplyAlgSelf() override {
        BUFFER_HEADER* chain = nullptr;
        for (size_t index = GetNumParams(); index-- > 0;)
            chain = ChainBufs(ApplyParamSelf(index), chain);
        return chain;
    }

    /// A plug-in that describes no controls is automated by one for each parameter.
    void CreateSpecificAutomationControls() override {
        KCAutomationManager& manager = *GetAutomationManager();
        if (manager.GetNumAutomationControllers() == 0)
            manager.AddControlsForParams();
    }

    /// Nothing beyond what ApplyAlgSelf sends; a host runs both before the first block of audio.
    BUFFER_HEADER* InitAlgSelf() override { return nullptr; }
};

} // namespace kvKorvoV12_9_0_320

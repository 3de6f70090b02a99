// The laws by which a moved parameter moves another: absolute (the same value), relative (the same distance),
// reverse (the same distance the other way). A plug-in derives its own from KCLinkFuncInterface and adds it to the
// law table (cALGORITHM::AddSpecificLinkFuncs).
//
// Thread: [main]. No law allocates.
#pragma once

#include <cstddef>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCLinkGroups;

class KORVO_API KCLinkFuncInterface {
  public:
    explicit KCLinkFuncInterface(KCLinkGroups& groups) : m_groups(&groups) {}
    virtual ~KCLinkFuncInterface();
    // True for a law that carries the value over, whatever the way it came.
    virtual bool AmIAbsolute() const;
    // Moves parameter `destination` because parameter `source` has moved; current setup.
    virtual void LinkFunc(size_t source, size_t destination) = 0;

    KCLinkFuncInterface(const KCLinkFuncInterface&) = delete;
    KCLinkFuncInterface& operator=(const KCLinkFuncInterface&) = delete;

  protected:
    KCLinkGroups& Groups() const { return *m_groups; }

  private:
    KCLinkGroups* m_groups;
};

// The destination takes the source's real-world value: as it stands where the destination's scale reaches it,
// otherwise the nearest end of the scale.
class KORVO_API KCLinkAbsoluteImpl : public KCLinkFuncInterface {
  public:
    using KCLinkFuncInterface::KCLinkFuncInterface;
    bool AmIAbsolute() const override;
    void LinkFunc(size_t source, size_t destination) override;
};

// The destination's state moves by the source's distance.
class KORVO_API KCLinkRelativeImpl : public KCLinkFuncInterface {
  public:
    using KCLinkFuncInterface::KCLinkFuncInterface;
    void LinkFunc(size_t source, size_t destination) override;
};

// The destination's state moves by the source's distance the other way.
class KORVO_API KCLinkReverseImpl : public KCLinkFuncInterface {
  public:
    using KCLinkFuncInterface::KCLinkFuncInterface;
    void LinkFunc(size_t source, size_t destination) override;
};

} // namespace kvKorvoV12_9_0_320
